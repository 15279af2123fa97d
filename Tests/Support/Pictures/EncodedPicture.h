#pragma once

#include <QBuffer>
#include <QImage>

namespace Clipboard::Testing {

inline QImage filled(QSize size, const QColor& color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// The picture as a file of that format.
inline QByteArray encoded(const QImage& image, const char* format = "png")
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

} // namespace Clipboard::Testing
