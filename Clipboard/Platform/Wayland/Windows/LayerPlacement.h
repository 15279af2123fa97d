#pragma once

#include <QMargins>
#include <QRect>
#include <QSize>

#include <cstdint>

namespace Clipboard::Wayland {

/// Where a surface stands as a compositor of layer shell takes it: tied to edges of the part of an output that bars
/// leave free, at a distance from each of them. Nobody is told where that part begins.
struct LayerPlacement
{
    uint32_t anchors = 0; // ZWLR_LAYER_SURFACE_V1_ANCHOR_…; centred between the edges of a direction that has none
    QMargins distances;   // from the edges that it is tied to, below 0 beyond them

    /// The edges that are nearest, on each axis none when both are as far.
    [[nodiscard]] static LayerPlacement of(const QRect& frame, const QRect& area);
    /// The whole area.
    [[nodiscard]] static LayerPlacement everywhere();

    /// Where a surface of that size is in a free part of that one.
    [[nodiscard]] QRect frameIn(QSize area, QSize size) const;

    bool operator==(const LayerPlacement&) const = default;
};

} // namespace Clipboard::Wayland
