#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QImage>
#include <QSize>
#include <QString>

/// Encoded pictures as pixels. Never on the main thread, but for announcedSize().
namespace Clipboard::PictureReading {

/// The most a picture may take once decoded. A few kilobytes can announce gigabytes of pixels, so the announced size is
/// checked before anything is decoded.
inline constexpr qsizetype maxDecodedBytes = qsizetype{512} * 1024 * 1024;

/// The first picture in the file, upright; null when it cannot be read or passes maxDecodedBytes. With a positive
/// `maxPixel` it is scaled down until its larger side fits.
[[nodiscard]] QImage readFile(const QString& path, int maxPixel = 0);

/// The same of a picture that is open for reading, from front to back at least.
[[nodiscard]] QImage read(QIODevice& device, int maxPixel = 0);

/// The size in pixels that the file's header announces, before it is turned upright; empty when that is no picture that
/// readFile() would try to decode. Reads no more than the header.
[[nodiscard]] QSize announcedSize(const QString& path);

/// The picture with its larger side at most `maxPixel` pixels; as it is when that fits already.
[[nodiscard]] QImage scaledDown(const QImage& image, int maxPixel);

/// The first picture of a TIFF, upright, in sRGB; null as above.
[[nodiscard]] QImage readTIFF(const QByteArray& tiff);

} // namespace Clipboard::PictureReading
