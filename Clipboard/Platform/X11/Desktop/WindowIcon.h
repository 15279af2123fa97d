#pragma once

#include <QImage>

#include <cstdint>
#include <span>

namespace Clipboard::X11 {

/// Words of _NET_WM_ICON that are read: room for one picture of 256 × 256 and all smaller ones.
inline constexpr uint32_t maxIconWords = 256 * 1024;

/// The picture best drawn at `size` pixels out of a _NET_WM_ICON property (EWMH: width, height, then the pixels as
/// ARGB, any number of times): the smallest that is large enough, else the largest. Null when there is none that is
/// whole.
[[nodiscard]] QImage windowIcon(std::span<const uint32_t> property, int size);

} // namespace Clipboard::X11
