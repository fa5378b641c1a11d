// Texts in fields whose size is limited in pixels, while fonts differ between platforms and settings.
#pragma once

#include <QFont>
#include <QFontInfo>
#include <QFontMetrics>
#include <QSize>
#include <QString>

// `font`, made smaller by as many pixels as it takes until `text` fits into `room` (pixels). It stays at 7
// pixels at least: what is smaller cannot be read either.
inline QFont fittingFont(QFont font, const QString &text, const QSize &room)
{
    for (int size = QFontInfo(font).pixelSize(); size > 7; --size) {
        const QSize needed = QFontMetrics(font).size(Qt::TextSingleLine, text);
        if (needed.width() <= room.width() && needed.height() <= room.height())
            break;
        font.setPixelSize(size - 1);
    }
    return font;
}
