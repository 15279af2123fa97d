#pragma once

#include <QByteArrayView>

#include <optional>

/// The compressed pixels of a PNG (ISO/IEC 15948, its IDAT chunks), looked through without being made pixels.
namespace Clipboard::DeflatedPixels {

/// What each row of a picture takes before it is compressed, and how many there are; of one that is not interlaced.
struct Rows
{
    qsizetype count = 0;
    qsizetype bytes = 0; // of each, without the one that says how it is filtered
};

/// The IDAT chunks as they stand in `png`, from the first one's length to the last one's checksum, when they hold these
/// rows and nothing else: every checksum is right, each row is filtered in a way that there is, and the compressed data
/// ends with the last chunk, so that nothing hides behind it. Nothing otherwise. Decompresses all of it into a small
/// buffer: takes its time, and no memory.
[[nodiscard]] std::optional<QByteArrayView> sound(QByteArrayView png, const Rows& rows);

} // namespace Clipboard::DeflatedPixels
