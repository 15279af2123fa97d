#include "PlasmaWindows.h"

#include "VirtualSession.h"

#include <plasma-window-management-client-protocol.h>

namespace Clipboard::Testing {

namespace {

constexpr quint32 protocolVersion = 16;

PlasmaWindows::Entry& entry(void* windows, org_kde_plasma_window* handle)
{
    return (*static_cast<std::map<org_kde_plasma_window*, PlasmaWindows::Entry>*>(windows))[handle];
}

} // namespace

PlasmaWindows::PlasmaWindows(VirtualSession& session)
    : m_client(session.connectToCompositor())
{
    if (m_client.display() == nullptr)
        return;
    using Manager = org_kde_plasma_window_management;
    m_manager = static_cast<Manager*>(m_client.bind(org_kde_plasma_window_management_interface, protocolVersion));
    static constexpr auto ignore = [](void*, Manager*, auto...) {};
    static constexpr org_kde_plasma_window_management_listener listener{
        ignore, ignore, ignore, ignore, [](void* self, Manager* manager, uint32_t, const char* name) {
            static_cast<PlasmaWindows*>(self)->add(org_kde_plasma_window_management_get_window_by_uuid(manager, name));
        }};
    if (m_manager != nullptr)
        org_kde_plasma_window_management_add_listener(m_manager, &listener, this);
}

PlasmaWindows::~PlasmaWindows()
{
    for (const auto& [handle, entry] : m_windows)
        org_kde_plasma_window_destroy(handle);
    if (m_manager != nullptr)
        org_kde_plasma_window_management_destroy(m_manager);
}

QList<PlasmaWindows::Entry> PlasmaWindows::all()
{
    // The first brings which there are, the second what was asked about them.
    wl_display_roundtrip(m_client.display());
    wl_display_roundtrip(m_client.display());
    QList<Entry> entries;
    for (const auto& [handle, entry] : m_windows)
        entries.append(entry);
    return entries;
}

void PlasmaWindows::add(org_kde_plasma_window* handle)
{
    using Handle = org_kde_plasma_window;
    static constexpr auto ignore = [](void*, Handle*, auto...) {};
    static constexpr org_kde_plasma_window_listener listener{
        [](void* all, Handle* of, const char* title) { entry(all, of).window.title = QString::fromUtf8(title); },
        [](void* all, Handle* of, const char* name) { entry(all, of).application = QString::fromUtf8(name); },
        [](void* all, Handle* of, uint32_t states) {
            entry(all, of).isActive = (states & ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE) != 0;
        },
        ignore,
        ignore,
        [](void* all, Handle* of) {
            static_cast<decltype(m_windows)*>(all)->erase(of);
            org_kde_plasma_window_destroy(of);
        },
        ignore,
        ignore,
        [](void* all, Handle* of, int32_t x, int32_t y, uint32_t width, uint32_t height) {
            entry(all, of).window.geometry = QRect(x, y, static_cast<int>(width), static_cast<int>(height));
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
    m_windows[handle].window.id = ++m_lastID;
    org_kde_plasma_window_add_listener(handle, &listener, &m_windows);
}

} // namespace Clipboard::Testing
