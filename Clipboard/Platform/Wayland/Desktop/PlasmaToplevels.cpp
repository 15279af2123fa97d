#include "PlasmaToplevels.h"

#include <plasma-window-management-client-protocol.h>

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace Clipboard::Wayland {

namespace {

// Windows have lasting names from the first of these on. Later ones tell of more than the listeners below know.
constexpr uint32_t firstVersion = 13;
constexpr uint32_t lastVersion = 16;

} // namespace

std::shared_ptr<PlasmaToplevels> PlasmaToplevels::follow()
{
    auto connection = WaylandConnection::open();
    if (!connection)
        return nullptr;
    std::shared_ptr<PlasmaToplevels> toplevels(new PlasmaToplevels(std::move(connection)));
    return toplevels->bind() ? toplevels : nullptr;
}

PlasmaToplevels::~PlasmaToplevels()
{
    for (const auto& [handle, state] : m_states)
        org_kde_plasma_window_destroy(handle);
    if (m_manager != nullptr)
        org_kde_plasma_window_management_destroy(m_manager);
}

bool PlasmaToplevels::bind()
{
    using Manager = org_kde_plasma_window_management;
    m_manager = static_cast<Manager*>(connection().bind(org_kde_plasma_window_management_interface, lastVersion));
    if (m_manager == nullptr || org_kde_plasma_window_management_get_version(m_manager) < firstVersion)
        return false;
    static constexpr org_kde_plasma_window_management_listener listener{
        [](void*, Manager*, uint32_t) {},
        [](void*, Manager*, uint32_t) {},
        [](void*, Manager*, wl_array*) {},
        [](void*, Manager*, const char*) {},
        [](void* self, Manager* manager, uint32_t, const char* name) {
            static_cast<PlasmaToplevels*>(self)->add(
                org_kde_plasma_window_management_get_window_by_uuid(manager, name));
        },
    };
    org_kde_plasma_window_management_add_listener(m_manager, &listener, this);
    // First comes which windows there are, then what is asked about them.
    return listen() && connection().roundTrip();
}

void PlasmaToplevels::add(Handle* handle)
{
    static constexpr auto ignore = [](void*, Handle*, auto...) {};
    static constexpr org_kde_plasma_window_listener listener{
        [](void* self, Handle* of, const char* title) {
            static_cast<PlasmaToplevels*>(self)->m_states[of].title = QString::fromUtf8(title);
        },
        [](void* self, Handle* of, const char* application) {
            static_cast<PlasmaToplevels*>(self)->setApplication(of, QString::fromUtf8(application));
        },
        [](void* self, Handle* of, uint32_t states) {
            const bool isActive = (states & ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE) != 0;
            static_cast<PlasmaToplevels*>(self)->setActive(of, isActive);
        },
        ignore,
        ignore,
        [](void* self, Handle* of) { static_cast<PlasmaToplevels*>(self)->end(of); },
        [](void* self, Handle* of) { static_cast<PlasmaToplevels*>(self)->m_states[of].isAsked = false; },
        ignore,
        [](void* self, Handle* of, int32_t x, int32_t y, uint32_t width, uint32_t height) {
            const QRect geometry(x, y, static_cast<int>(width), static_cast<int>(height));
            static_cast<PlasmaToplevels*>(self)->m_states[of].geometry = geometry;
        },
        ignore,
        ignore,
        ignore,
        ignore,
        ignore,
        ignore,
        ignore,
        ignore,
    };
    m_states[handle].isAsked = true;
    org_kde_plasma_window_add_listener(handle, &listener, this);
}

void PlasmaToplevels::end(Handle* handle)
{
    remove(handle);
    m_states.erase(handle);
    org_kde_plasma_window_destroy(handle);
}

bool PlasmaToplevels::isAsking() const
{
    return std::ranges::any_of(m_states, [](const auto& entry) { return entry.second.isAsked; });
}

QString PlasmaToplevels::outputOf(Window window) const
{
    const auto isIt = [window](const auto& entry) { return entry.first == window; };
    const auto found = std::ranges::find_if(m_states, isIt);
    if (found == m_states.end())
        return {};
    const QScreen* screen = QGuiApplication::screenAt(found->second.geometry.center());
    return screen == nullptr ? QString() : screen->name();
}

bool PlasmaToplevels::activateOurs(const QString& title)
{
    constexpr uint32_t active = ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE;
    for (const auto& [handle, state] : m_states) {
        if (state.title != title || !isOurs(handle))
            continue;
        org_kde_plasma_window_set_state(handle, active, active);
        connection().serve();
        return true;
    }
    return false;
}

} // namespace Clipboard::Wayland
