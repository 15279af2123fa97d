#include "Toplevels.h"

#include <wlr-foreign-toplevel-management-unstable-v1-client-protocol.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QSocketNotifier>

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

std::shared_ptr<Toplevels> Toplevels::follow()
{
    auto connection = WaylandConnection::open();
    if (!connection)
        return nullptr;
    std::shared_ptr<Toplevels> toplevels(new Toplevels(std::move(connection)));
    return toplevels->bind() ? toplevels : nullptr;
}

Toplevels::Toplevels(std::unique_ptr<WaylandConnection> connection)
    : m_connection(std::move(connection))
{
}

Toplevels::~Toplevels()
{
    for (const auto& [handle, window] : m_windows)
        zwlr_foreign_toplevel_handle_v1_destroy(handle);
    if (m_manager != nullptr)
        zwlr_foreign_toplevel_manager_v1_destroy(m_manager);
}

bool Toplevels::bind()
{
    using Manager = zwlr_foreign_toplevel_manager_v1;
    m_manager = static_cast<Manager*>(m_connection->bind(zwlr_foreign_toplevel_manager_v1_interface, managerVersion));
    if (m_manager == nullptr)
        return false;
    static constexpr zwlr_foreign_toplevel_manager_v1_listener listener{
        [](void* self, Manager*, Handle* handle) { static_cast<Toplevels*>(self)->add(handle); },
        [](void*, Manager*) {},
    };
    zwlr_foreign_toplevel_manager_v1_add_listener(m_manager, &listener, this);
    auto* notifier = new QSocketNotifier(wl_display_get_fd(m_connection->get()), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        m_connection->serve();
        notifier->setEnabled(!m_connection->isBroken());
    });
    return m_connection->roundTrip();
}

void Toplevels::add(Handle* handle)
{
    static constexpr zwlr_foreign_toplevel_handle_v1_listener listener{
        [](void*, Handle*, const char*) {},
        [](void* self, Handle* of, const char* application) {
            static_cast<Toplevels*>(self)->m_windows[of].application = QString::fromUtf8(application);
        },
        [](void*, Handle*, wl_output*) {},
        [](void*, Handle*, wl_output*) {},
        [](void* self, Handle* of, wl_array* states) {
            static_cast<Toplevels*>(self)->m_windows[of].willBeActive = isActivated(states);
        },
        [](void* self, Handle* of) { static_cast<Toplevels*>(self)->apply(of); },
        [](void* self, Handle* of) { static_cast<Toplevels*>(self)->remove(of); },
        [](void*, Handle*, Handle*) {},
    };
    m_windows[handle];
    zwlr_foreign_toplevel_handle_v1_add_listener(handle, &listener, this);
}

void Toplevels::apply(Handle* handle)
{
    Window& window = m_windows[handle];
    const bool was = std::exchange(window.isActive, window.willBeActive);
    if (window.isActive) {
        m_active = handle;
        if (!isOurs(window))
            m_front = handle;
    } else if (was && m_active == handle) {
        m_active = nullptr;
    }
    emit frontChanged();
}

void Toplevels::remove(Handle* handle)
{
    m_windows.erase(handle);
    if (m_active == handle)
        m_active = nullptr;
    if (m_front == handle)
        m_front = nullptr;
    zwlr_foreign_toplevel_handle_v1_destroy(handle);
    emit frontChanged();
}

bool Toplevels::isOurs(const Window& window) const
{
    return window.application.compare(QGuiApplication::desktopFileName(), Qt::CaseInsensitive) == 0 ||
           window.application.compare(QCoreApplication::applicationName(), Qt::CaseInsensitive) == 0;
}

std::optional<QString> Toplevels::frontApplication() const
{
    const bool isActive = m_active != nullptr && m_front != nullptr;
    return isActive ? std::optional(m_windows.at(m_front).application) : std::nullopt;
}

bool Toplevels::isFrontBack() const
{
    return m_front != nullptr && m_active == m_front;
}

} // namespace Clipboard::Wayland
