#pragma once

#include "SnapshotPasteboard.h"

#include <memory>

namespace Clipboard {

/// The clipboard of a Wayland compositor that lets programs without windows follow it.
class WaylandPasteboard final : public SnapshotPasteboard
{
public:
    /// Null when the compositor cannot be reached or has no data control. An empty name means $WAYLAND_DISPLAY.
    [[nodiscard]] static std::unique_ptr<WaylandPasteboard> create(const QByteArray& display = {});

private:
    WaylandPasteboard() = default;
};

} // namespace Clipboard
