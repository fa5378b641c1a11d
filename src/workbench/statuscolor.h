// Colours of what went wrong, which can be read on light and on dark windows.
#pragma once

#include <QColor>
#include <QPalette>

namespace statuscolor {

inline bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightness() < 128;
}

inline QColor warning(const QPalette &palette)
{
    return isDark(palette) ? QColor(0xff, 0xb0, 0x50) : QColor(0x9a, 0x5a, 0x00);
}

inline QColor failure(const QPalette &palette)
{
    return isDark(palette) ? QColor(0xff, 0x80, 0x80) : QColor(0xb0, 0x1c, 0x1c);
}

} // namespace statuscolor
