#include "LayerPlacement.h"

#include <wlr-layer-shell-unstable-v1-client-protocol.h>

#include <cstdlib>

namespace Clipboard::Wayland {

namespace {

constexpr uint32_t top = ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP;
constexpr uint32_t bottom = ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM;
constexpr uint32_t left = ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT;
constexpr uint32_t right = ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;

/// Which of two edges is nearer; none when the frame is centred, give or take what halving an odd width leaves.
uint32_t nearer(int toFirst, uint32_t first, int toSecond, uint32_t second)
{
    if (std::abs(toFirst - toSecond) <= 1)
        return 0;
    return toFirst < toSecond ? first : second;
}

/// Where it begins on an axis.
int beginning(int area, int size, bool isAtFirst, int fromFirst, bool isAtSecond, int fromSecond)
{
    if (isAtFirst)
        return fromFirst;
    return isAtSecond ? area - fromSecond - size : (area - size) / 2;
}

} // namespace

LayerPlacement LayerPlacement::of(const QRect& frame, const QRect& area)
{
    const int toLeft = frame.x() - area.x();
    const int toTop = frame.y() - area.y();
    const int toRight = area.width() - toLeft - frame.width();
    const int toBottom = area.height() - toTop - frame.height();
    const uint32_t anchors = nearer(toLeft, left, toRight, right) | nearer(toTop, top, toBottom, bottom);
    const auto distance = [anchors](uint32_t edge, int length) { return (anchors & edge) != 0 ? length : 0; };
    return {anchors,
            {distance(left, toLeft), distance(top, toTop), distance(right, toRight), distance(bottom, toBottom)}};
}

LayerPlacement LayerPlacement::everywhere()
{
    return {top | bottom | left | right, {}};
}

QRect LayerPlacement::frameIn(QSize area, QSize size) const
{
    const auto isAt = [this](uint32_t edge) { return (anchors & edge) != 0; };
    const int x = beginning(area.width(), size.width(), isAt(left), distances.left(), isAt(right), distances.right());
    const int y = beginning(area.height(), size.height(), isAt(top), distances.top(), isAt(bottom), distances.bottom());
    return {QPoint(x, y), size};
}

} // namespace Clipboard::Wayland
