#pragma once

#include "Annotation/Picture.h"

namespace ClipboardCore {

/// The picture with one pixel a block of `blockSize` × `blockSize`, counted from the top left corner: each component
/// the truncated mean over the block's pixels inside the picture, so fewer on the right and at the bottom. Null when
/// memory is missing. Any thread.
[[nodiscard]] std::shared_ptr<const Picture> pixelated(const Picture& picture, int blockSize);

} // namespace ClipboardCore
