#include "WaylandClient.h"

#include "VirtualSession.h"

#include <wayland-client.h>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

WaylandClient::WaylandClient(const VirtualSession& session)
{
    const auto& environment = session.environment();
    const QString socket = environment.value(u"XDG_RUNTIME_DIR"_s) + u'/' + environment.value(u"WAYLAND_DISPLAY"_s);
    m_display = wl_display_connect(socket.toLocal8Bit().constData());
    listen();
}

WaylandClient::WaylandClient(int connection)
    : m_display(connection < 0 ? nullptr : wl_display_connect_to_fd(connection))
{
    listen();
}

void WaylandClient::listen()
{
    if (m_display == nullptr)
        return;
    static constexpr wl_registry_listener listener{
        [](void* globals, wl_registry*, uint32_t name, const char* interface, uint32_t) {
            static_cast<decltype(m_globals)*>(globals)->insert(interface, name);
        },
        [](void*, wl_registry*, uint32_t) {},
    };
    m_registry = wl_display_get_registry(m_display);
    wl_registry_add_listener(m_registry, &listener, &m_globals);
    wl_display_roundtrip(m_display);
}

WaylandClient::~WaylandClient()
{
    close();
}

void WaylandClient::close()
{
    if (m_display == nullptr)
        return;
    wl_registry_destroy(m_registry);
    wl_display_disconnect(m_display);
    m_display = nullptr;
}

void* WaylandClient::bind(const wl_interface& interface, quint32 version) const
{
    const auto name = m_globals.constFind(interface.name);
    return name == m_globals.cend() ? nullptr : wl_registry_bind(m_registry, *name, &interface, version);
}

} // namespace Clipboard::Testing
