#include "PictureReading.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

namespace Clipboard {

namespace {

constexpr qint64 bytesPerPixel = 8; // at most: 16 bits for each of four channels

bool isWithinBounds(QSize size)
{
    return !size.isEmpty() && qint64{size.width()} * size.height() * bytesPerPixel <= PictureReading::maxDecodedBytes;
}

QImage readUpright(QImageReader& reader, int maxPixel)
{
    // The toolkit's own limit, 128 MiB, is below a 16-bit photograph; ours is checked here.
    static const bool limitRaised = [] {
        QImageReader::setAllocationLimit(int{PictureReading::maxDecodedBytes / 1024 / 1024});
        return true;
    }();
    Q_UNUSED(limitRaised)

    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!isWithinBounds(size))
        return {};
    if (maxPixel > 0 && std::max(size.width(), size.height()) > maxPixel)
        reader.setScaledSize(size.scaled(maxPixel, maxPixel, Qt::KeepAspectRatio).expandedTo({1, 1}));
    return reader.read();
}

} // namespace

QImage PictureReading::readFile(const QString& path, int maxPixel)
{
    QImageReader reader(path);
    return readUpright(reader, maxPixel);
}

bool PictureReading::announcesPicture(const QString& path)
{
    return isWithinBounds(QImageReader(path).size());
}

QImage PictureReading::readTIFF(const QByteArray& tiff)
{
    QBuffer buffer;
    buffer.setData(tiff);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, QByteArrayLiteral("tiff"));
    reader.setAutoDetectImageFormat(false);
    QImage image = readUpright(reader, 0);
    if (image.colorSpace().isValid())
        image.convertToColorSpace(QColorSpace::SRgb);
    return image;
}

} // namespace Clipboard
