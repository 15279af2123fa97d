#include "DataControl.h"

namespace Clipboard::Wayland {

namespace {

constexpr const char* olderName = "zwlr_data_control_manager_v1";
constexpr uint32_t olderVersion = 2;

/// The older protocol's messages are the same, with the same numbers and arguments; only the name by which the manager
/// is bound is told to the compositor.
const wl_interface& olderManager()
{
    static const wl_interface interface = [] {
        wl_interface other = ext_data_control_manager_v1_interface;
        other.name = olderName;
        other.version = olderVersion;
        return other;
    }();
    return interface;
}

} // namespace

DataControlManager bindDataControl(const WaylandConnection& connection)
{
    void* manager = connection.bind(ext_data_control_manager_v1_interface, 1);
    if (manager == nullptr)
        manager = connection.bind(olderManager(), olderVersion);
    return DataControlManager(static_cast<ext_data_control_manager_v1*>(manager));
}

bool hasPrimarySelection(const DataControlManager& manager)
{
    auto* proxy = reinterpret_cast<wl_proxy*>(manager.get());
    return QByteArrayView(wl_proxy_get_class(proxy)) != olderName || wl_proxy_get_version(proxy) >= olderVersion;
}

} // namespace Clipboard::Wayland
