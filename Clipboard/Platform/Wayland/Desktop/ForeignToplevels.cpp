#include "ForeignToplevels.h"

#include <wlr-foreign-toplevel-management-unstable-v1-client-protocol.h>

#include <algorithm>

namespace Clipboard::Wayland {

namespace {

constexpr uint32_t managerVersion = 3;

bool isActivated(const wl_array* states)
{
    const auto* first = static_cast<const uint32_t*>(states->data);
    const auto* end = first + states->size / sizeof(uint32_t);
    return std::find(first, end, uint32_t{ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED}) != end;
}

} // namespace

std::shared_ptr<ForeignToplevels> ForeignToplevels::follow()
{
    auto connection = WaylandConnection::open();
    if (!connection)
        return nullptr;
    std::shared_ptr<ForeignToplevels> toplevels(new ForeignToplevels(std::move(connection)));
    return toplevels->bind() ? toplevels : nullptr;
}

ForeignToplevels::~ForeignToplevels()
{
    for (const auto& [handle, state] : m_states)
        zwlr_foreign_toplevel_handle_v1_destroy(handle);
    if (m_seat != nullptr)
        wl_seat_destroy(m_seat);
    if (m_manager != nullptr)
        zwlr_foreign_toplevel_manager_v1_destroy(m_manager);
}

bool ForeignToplevels::bind()
{
    using Manager = zwlr_foreign_toplevel_manager_v1;
    m_manager = static_cast<Manager*>(connection().bind(zwlr_foreign_toplevel_manager_v1_interface, managerVersion));
    m_seat = static_cast<wl_seat*>(connection().bind(wl_seat_interface, 1));
    if (m_manager == nullptr)
        return false;
    m_outputs.emplace(connection());
    static constexpr zwlr_foreign_toplevel_manager_v1_listener listener{
        [](void* self, Manager*, Handle* handle) { static_cast<ForeignToplevels*>(self)->add(handle); },
        [](void*, Manager*) {},
    };
    zwlr_foreign_toplevel_manager_v1_add_listener(m_manager, &listener, this);
    return listen();
}

void ForeignToplevels::add(Handle* handle)
{
    static constexpr zwlr_foreign_toplevel_handle_v1_listener listener{
        [](void* self, Handle* of, const char* title) {
            static_cast<ForeignToplevels*>(self)->m_states[of].title = QString::fromUtf8(title);
        },
        [](void* self, Handle* of, const char* application) {
            static_cast<ForeignToplevels*>(self)->setApplication(of, QString::fromUtf8(application));
        },
        [](void* self, Handle* of, wl_output* output) {
            static_cast<ForeignToplevels*>(self)->m_states[of].outputs.push_back(output);
        },
        [](void* self, Handle* of, wl_output* output) {
            std::erase(static_cast<ForeignToplevels*>(self)->m_states[of].outputs, output);
        },
        [](void* self, Handle* of, wl_array* states) {
            static_cast<ForeignToplevels*>(self)->m_states[of].willBeActive = isActivated(states);
        },
        [](void* self, Handle* of) { static_cast<ForeignToplevels*>(self)->apply(of); },
        [](void* self, Handle* of) { static_cast<ForeignToplevels*>(self)->end(of); },
        [](void*, Handle*, Handle*) {},
    };
    m_states[handle] = {};
    zwlr_foreign_toplevel_handle_v1_add_listener(handle, &listener, this);
}

void ForeignToplevels::apply(Handle* handle)
{
    setActive(handle, m_states[handle].willBeActive);
}

QString ForeignToplevels::outputOf(Window window) const
{
    const auto isIt = [window](const auto& entry) { return entry.first == window; };
    const auto found = std::ranges::find_if(m_states, isIt);
    const bool isAnywhere = found != m_states.end() && !found->second.outputs.empty();
    return isAnywhere ? m_outputs->of(found->second.outputs.front()) : QString();
}

bool ForeignToplevels::activateOurs(const QString& title)
{
    for (const auto& [handle, state] : m_states) {
        if (m_seat == nullptr || state.title != title || !isOurs(handle))
            continue;
        zwlr_foreign_toplevel_handle_v1_activate(handle, m_seat);
        connection().serve();
        return true;
    }
    return false;
}

void ForeignToplevels::end(Handle* handle)
{
    remove(handle);
    m_states.erase(handle);
    zwlr_foreign_toplevel_handle_v1_destroy(handle);
}

} // namespace Clipboard::Wayland
