#pragma once

#include <QByteArray>
#include <QHash>

struct wl_display;
struct wl_interface;
struct wl_registry;

namespace Clipboard::Testing {

class VirtualSession;

/// A connection to the compositor of a session, and what is offered there. Everything bound has to be destroyed first.
class WaylandClient
{
public:
    explicit WaylandClient(const VirtualSession& session);
    /// Over a connection that has been made, which it takes over; none when that is negative.
    explicit WaylandClient(int connection);
    ~WaylandClient();
    Q_DISABLE_COPY_MOVE(WaylandClient)

    /// Ends the connection, as the end of a program does.
    void close();
    /// Null when the compositor could not be reached, or is no longer.
    [[nodiscard]] wl_display* display() const { return m_display; }
    /// The proxy of a global by the interface's name; null when it is not offered. The version has to be.
    [[nodiscard]] void* bind(const wl_interface& interface, quint32 version = 1) const;

private:
    void listen();

    wl_display* m_display = nullptr;
    wl_registry* m_registry = nullptr;
    QHash<QByteArray, quint32> m_globals;
};

} // namespace Clipboard::Testing
