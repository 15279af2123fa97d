#include "WindowIcon.h"

#include <cstring>

namespace Clipboard::X11 {

namespace {

struct Picture
{
    int width = 0;
    int height = 0;
    std::span<const uint32_t> pixels;
};

bool isBetter(const Picture& candidate, const Picture& best, int size)
{
    if (best.width < size)
        return candidate.width > best.width;
    return candidate.width >= size && candidate.width < best.width;
}

} // namespace

QImage windowIcon(std::span<const uint32_t> property, int size)
{
    Picture best;
    while (property.size() > 2) {
        const size_t width = property[0];
        const size_t height = property[1];
        property = property.subspan(2);
        if (width == 0 || height == 0 || width > property.size() || height > property.size() / width)
            break;
        const Picture candidate{static_cast<int>(width), static_cast<int>(height), property.first(width * height)};
        if (isBetter(candidate, best, size))
            best = candidate;
        property = property.subspan(width * height);
    }
    if (best.width == 0)
        return {};
    QImage image(best.width, best.height, QImage::Format_ARGB32);
    const auto rowWords = static_cast<size_t>(best.width);
    for (int y = 0; y < best.height; ++y)
        std::memcpy(image.scanLine(y), best.pixels.data() + static_cast<size_t>(y) * rowWords,
                    rowWords * sizeof(uint32_t));
    // Larger ones would only wait in memory.
    if (best.width > 2 * size)
        return image.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

} // namespace Clipboard::X11
