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

/// The header of a picture of 100,000 × 100,000 with eight bits a channel and alpha: 40 GB, and nothing behind it.
inline const QByteArray announcement =
    QByteArray::fromHex("89504e470d0a1a0a0000000d49484452000186a0000186a00806000000a8520bc8000000004944415435af061e");

} // namespace Clipboard::Testing
