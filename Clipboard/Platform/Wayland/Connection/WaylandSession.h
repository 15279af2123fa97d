#pragma once

#include <QByteArray>

namespace Clipboard::Wayland {

/// What the compositor of a Wayland session lets programs do.
struct WaylandSession
{
    bool isThere = false;
    bool hasDataControl = false;
    /// Programs may place windows themselves, above all others, and are told which of the others is active.
    bool hasLayerShell = false;

    /// Looks once, on a connection of its own, before there is a toolkit. Nothing is there without a compositor, or
    /// when it does not answer soon. An empty name means $WAYLAND_DISPLAY.
    [[nodiscard]] static WaylandSession look(const QByteArray& display = {});
};

} // namespace Clipboard::Wayland
