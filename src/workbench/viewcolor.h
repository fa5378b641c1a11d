// The colour of a layer in the workbench's lists and view.
#pragma once

#include "run/orvexapi.h"

#include <QColor>

// That of the Export dialog, but for types that the dialog has no colour for: here a mixed layer is copper
// and a routed one drilled.
QColor viewColor(ORVEX::API::layer_info layer);
