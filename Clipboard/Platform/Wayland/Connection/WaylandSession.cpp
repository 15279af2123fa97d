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
    session.hasLayerShell = connection->offers("zwlr_layer_shell_v1") && connection->offers("wp_viewporter") &&
                            connection->offers("zwlr_foreign_toplevel_manager_v1");
    return session;
}

} // namespace Clipboard::Wayland
