#pragma once

#include "WaylandConnection.h"

#include <ext-data-control-v1-client-protocol.h>

#include <memory>

namespace Clipboard::Wayland {

/// Destroys an object of the protocol, by the request that does so.
struct Destroyer
{
    void operator()(ext_data_control_manager_v1* manager) const { ext_data_control_manager_v1_destroy(manager); }
    void operator()(ext_data_control_device_v1* device) const { ext_data_control_device_v1_destroy(device); }
    void operator()(ext_data_control_source_v1* source) const { ext_data_control_source_v1_destroy(source); }
    void operator()(ext_data_control_offer_v1* offer) const { ext_data_control_offer_v1_destroy(offer); }
    void operator()(wl_seat* seat) const { wl_seat_destroy(seat); }
};

using DataControlManager = std::unique_ptr<ext_data_control_manager_v1, Destroyer>;
using DataControlDevice = std::unique_ptr<ext_data_control_device_v1, Destroyer>;
using DataControlSource = std::unique_ptr<ext_data_control_source_v1, Destroyer>;
using DataControlOffer = std::unique_ptr<ext_data_control_offer_v1, Destroyer>;
using Seat = std::unique_ptr<wl_seat, Destroyer>;

/// The compositor's data control: ext-data-control-v1, or wlr-data-control-unstable-v1 where only that is there. Null
/// without either.
[[nodiscard]] DataControlManager bindDataControl(const WaylandConnection& connection);
/// The first version of the older protocol has no primary selection.
[[nodiscard]] bool hasPrimarySelection(const DataControlManager& manager);

} // namespace Clipboard::Wayland
