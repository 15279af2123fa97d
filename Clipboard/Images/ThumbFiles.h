#pragma once

#include <QImage>
#include <QString>

/// Small copies of the stored pictures, on the disk beside them: a large screenshot takes a fifth of a second to
/// decode, its small copy some milliseconds (docs/decisions/0008-thumbnail-files.md). Never on the main thread, but
/// for path() and remove().
namespace Clipboard::ThumbFiles {

/// The folder of the small copies inside the folder of the pictures.
[[nodiscard]] QString folderIn(const QString& picturesFolder);

/// Where the small copy of a picture belongs. Nothing says that it is there.
[[nodiscard]] QString path(const QString& picture);

/// The picture, upright, its larger side at most `maxPixel` pixels: from its small copy where that is large enough, and
/// else from the picture itself. A small copy that is missing or damaged is made on the way. Null when the picture is
/// gone, cannot be read or passes PictureReading::maxDecodedBytes.
[[nodiscard]] QImage read(const QString& picture, int maxPixel);

/// Makes the small copy unless it is there already.
void make(const QString& picture);

/// Makes the small copy from the picture's pixels, which somebody has at hand.
void make(const QString& picture, const QImage& pixels);

void remove(const QString& picture);

} // namespace Clipboard::ThumbFiles
