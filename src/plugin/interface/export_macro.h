// The keyword that makes a name visible outside the module.
#pragma once

#include <QtGlobal>

#define FILE_PROCESS_EXPORT Q_DECL_EXPORT
