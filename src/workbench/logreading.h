// English readings of what the plug-in logs in Chinese.
#pragma once

#include <QString>

// `text` with its Chinese parts in English, or an empty text when there is none, or none that is known.
QString englishReading(const QString &text);
