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

    /// Waits for a compositor that has gone, or has lost its Xwayland alone. Some other program of the session, which
    /// will start it again, keeps its socket meanwhile; false at once where nobody does, and when it takes too long.
    [[nodiscard]] static bool awaitAgain(const QByteArray& display = {});
};

} // namespace Clipboard::Wayland
