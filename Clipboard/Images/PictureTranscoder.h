#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>
#include <stop_token>

/// From a picture as another program handed it over to a PNG that carries nothing but the picture.
namespace Clipboard::PictureTranscoder {

/// Decodes a PNG (ISO/IEC 15948) or a TIFF and encodes it as PNG.
///
/// A PNG keeps its colour type and bit depth, its palette and transparency, and the chunks that say how its colours and
/// its size are meant (iCCP, sRGB, gAMA, cHRM, pHYs); every other chunk is dropped. It passes through a row at a time,
/// so that a large one costs little memory. The pixels of a photograph or finer that are sound stay compressed as they
/// came. A TIFF becomes 8 or 16 bits a channel in sRGB. Nothing for other formats, broken data, and pictures that would
/// take more than PictureReading::maxDecodedBytes.
///
/// Once a stop of `hurry` is requested, before or meanwhile, the pixels are stored as they are: the same picture,
/// several times as fast, in a file as large as the pixels.
[[nodiscard]] std::optional<QByteArray> toPNG(const QByteArray& picture, const std::stop_token& hurry = {});

/// Encodes pixels, 8 or 16 bits a channel as they have it, with the profile of their colour space unless that is sRGB.
/// Nothing for a null image.
[[nodiscard]] std::optional<QByteArray> toPNG(QImage image, const std::stop_token& hurry = {});

} // namespace Clipboard::PictureTranscoder
