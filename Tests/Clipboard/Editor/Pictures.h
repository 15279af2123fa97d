#pragma once

#include <QImage>
#include <QRect>

namespace Clipboard::Testing {

constexpr QRgb white = 0xffffffff;
constexpr QRgb red = 0xffff3b30; // of the palette

inline QImage plain(const QColor& color = Qt::white, QSize size = {400, 300})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// Where the picture is not of that colour.
inline QRect extentOf(const QImage& picture, QRgb ground = white)
{
    QRect extent;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != ground)
                extent |= QRect(x, y, 1, 1);
        }
    }
    return extent;
}

} // namespace Clipboard::Testing
