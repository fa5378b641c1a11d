// Log lines as text. A plug-in may log in the GBK code page and put a UTF-8 path into the same line.
#pragma once

#include <QByteArray>
#include <QString>

// Each run of bytes outside ASCII is read as UTF-8 where it is valid UTF-8, which GBK text hardly ever is,
// and as GBK otherwise.
QString decodeLogText(const QByteArray &bytes);
