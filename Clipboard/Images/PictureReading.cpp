#include "PictureReading.h"

#include "Sealing/StoredFile.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

#include <algorithm>

namespace Clipboard {

namespace {

constexpr qint64 bytesPerPixel = 8; // at most: 16 bits for each of four channels

bool isWithinBounds(QSize size)
{
    return !size.isEmpty() && qint64{size.width()} * size.height() * bytesPerPixel <= PictureReading::maxDecodedBytes;
}

QSize fitted(QSize size, int maxPixel)
{
    if (std::max(size.width(), size.height()) <= maxPixel)
        return size;
    return size.scaled(maxPixel, maxPixel, Qt::KeepAspectRatio).expandedTo({1, 1});
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
    if (maxPixel > 0)
        reader.setScaledSize(fitted(size, maxPixel));
    return reader.read();
}

} // namespace

QImage PictureReading::readFile(const QString& path, int maxPixel)
{
    const auto file = ClipboardCore::StoredFile::open(path);
    return file ? read(*file, maxPixel) : QImage();
}

QImage PictureReading::read(QIODevice& device, int maxPixel)
{
    QImageReader reader(&device);
    return readUpright(reader, maxPixel);
}

QSize PictureReading::announcedSize(const QString& path)
{
    const auto file = ClipboardCore::StoredFile::open(path);
    const QSize size = file ? QImageReader(file.get()).size() : QSize();
    return isWithinBounds(size) ? size : QSize();
}

QImage PictureReading::scaledDown(const QImage& image, int maxPixel)
{
    const QSize size = fitted(image.size(), maxPixel);
    return size == image.size() ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
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
