#include "WaylandSession.h"

#include "WaylandConnection.h"

namespace Clipboard::Wayland {

WaylandSession WaylandSession::look(const QByteArray& display)
{
    const auto connection = WaylandConnection::open(display);
    if (!connection)
        return {};
    WaylandSession session;
    session.isThere = true;
    session.hasDataControl =
        connection->offers("ext_data_control_manager_v1") || connection->offers("zwlr_data_control_manager_v1");
    const bool hasWindowList = connection->offers("zwlr_foreign_toplevel_manager_v1") ||
                               connection->offers("org_kde_plasma_window_management");
    session.hasLayerShell =
        connection->offers("zwlr_layer_shell_v1") && connection->offers("wp_viewporter") && hasWindowList;
    return session;
}

bool WaylandSession::awaitAgain(const QByteArray& display)
{
    // Plasma's compositor takes seconds, and a report of its crash may be written first.
    constexpr std::chrono::seconds limit{30};
    return WaylandConnection::open(display, limit) != nullptr;
}

} // namespace Clipboard::Wayland
