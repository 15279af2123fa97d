#pragma once

#include "PasteChord.h"
#include "XcbConnection.h"

#include <QObject>
#include <QRect>
#include <QSocketNotifier>

#include <memory>

namespace Clipboard::X11 {

/// The main thread's connection to the X server, shared by the adapters that deal with windows and keys. It speaks to
/// the server alone, never to another program, so a call takes the time of a round trip at most.
class X11Session final : public QObject
{
    Q_OBJECT
public:
    /// Null when the display cannot be reached. An empty name means $DISPLAY.
    [[nodiscard]] static std::shared_ptr<X11Session> open(const QByteArray& display = {});

    [[nodiscard]] XcbConnection& connection() { return *m_connection; }
    [[nodiscard]] xcb_connection_t* xcb() const { return m_connection->get(); }
    [[nodiscard]] xcb_window_t root() const { return m_connection->root(); }
    /// A hidden window of this connection, for selections and the like.
    [[nodiscard]] xcb_window_t window() const { return m_window; }

    /// The key code that SpareKey has lent a symbol, which is none of the user's keys; 0 for none.
    [[nodiscard]] xcb_keycode_t lentKey() const { return m_lentKey; }
    void setLentKey(xcb_keycode_t key) { m_lentKey = key; }

    /// Tells of every event that has come so far.
    void readEvents();
    /// The server's time now: accepted wherever the time of the user's latest action is asked for.
    [[nodiscard]] xcb_timestamp_t serverTime();
    /// The window that the window manager calls active; none without such a manager.
    [[nodiscard]] xcb_window_t activeWindow();
    /// The window with the input focus; none while the focus follows the pointer or is nowhere.
    [[nodiscard]] xcb_window_t focusWindow();
    struct Pointer
    {
        QPoint place; // on the root window, in pixels
        /// The outermost window beneath it; none over the bare root window.
        xcb_window_t window = XCB_WINDOW_NONE;
    };
    [[nodiscard]] Pointer pointer() const;
    /// The innermost window beneath it.
    [[nodiscard]] xcb_window_t windowAtPointer() const;
    /// On the root window, in pixels; empty when the window is gone.
    [[nodiscard]] QRect geometry(xcb_window_t window) const;
    /// True for the window that file managers keep behind all others, over every screen.
    [[nodiscard]] bool isDesktop(xcb_window_t window);
    [[nodiscard]] bool isWindow(xcb_window_t window);
    /// True for a window of this process.
    [[nodiscard]] bool isOurs(xcb_window_t window);
    /// True when `inner` is `outer` or a window at any depth in it.
    [[nodiscard]] bool isInside(xcb_window_t inner, xcb_window_t outer) const;
    /// Instance and class of WM_CLASS; empty when the window has none.
    [[nodiscard]] WindowClass windowClass(xcb_window_t window) const;
    /// That of the innermost window around `window`, itself included, that has one.
    [[nodiscard]] WindowClass windowClassAround(xcb_window_t window) const;
    /// True when the window manager answers _NET_ACTIVE_WINDOW messages.
    [[nodiscard]] bool hasActivation();
    /// Asks the window manager to make the window active, as if the user had picked it; without one, sets the focus.
    void activate(xcb_window_t window);

signals:
    /// Every event of this connection, in order.
    void eventReceived(const xcb_generic_event_t* event);

private:
    explicit X11Session(std::unique_ptr<XcbConnection> connection);

    [[nodiscard]] xcb_window_t parentOf(xcb_window_t window) const;

    std::unique_ptr<XcbConnection> m_connection;
    xcb_window_t m_window;
    xcb_keycode_t m_lentKey = 0;
    xcb_timestamp_t m_lastTime = XCB_CURRENT_TIME;
    QSocketNotifier m_notifier;
};

} // namespace Clipboard::X11
