#include "X11Session.h"

#include <QAbstractEventDispatcher>

#include <unistd.h>

#include <algorithm>

namespace Clipboard::X11 {

namespace {

// Names of programs; nobody needs more.
constexpr uint32_t maxClassWords = 256;
// The hints that a window manager lists as supported; the longest lists have about a hundred.
constexpr uint32_t maxSupportedHints = 1024;
// A window has one type, and perhaps others for window managers that do not know it.
constexpr uint32_t maxWindowTypes = 16;
// The deepest trees of windows, those of old toolkits and embedded programs, have about ten levels.
constexpr int maxWindowDepth = 32;

} // namespace

std::shared_ptr<X11Session> X11Session::open(const QByteArray& display)
{
    auto connection = XcbConnection::open(display);
    if (!connection)
        return nullptr;
    return std::shared_ptr<X11Session>(new X11Session(std::move(connection)));
}

X11Session::X11Session(std::unique_ptr<XcbConnection> connection)
    : m_connection(std::move(connection))
    , m_window(m_connection->createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE))
    , m_notifier(m_connection->fileDescriptor(), QSocketNotifier::Read)
{
    m_connection->preloadAtoms({"_NET_ACTIVE_WINDOW", "_NET_SUPPORTED", "_NET_WM_PID", "_NET_WM_STATE",
                                "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER", "_NET_WM_STATE_STICKY",
                                "_NET_WM_STATE_ABOVE", "_NET_WM_DESKTOP", "_NET_WM_ICON", "_GTK_FRAME_EXTENTS",
                                "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DESKTOP", "_GTK_APPLICATION_ID",
                                "UTF8_STRING", "TESSALY_TIME"});
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(xcb(), root(), XCB_CW_EVENT_MASK, &mask);
    m_connection->flush();
    connect(&m_notifier, &QSocketNotifier::activated, this, &X11Session::readEvents);
    // The socket is silent about events that came in while a reply was waited for, so they are looked for in each round
    // of the event loop: before it sleeps, or at its start where it is only polled.
    if (auto* dispatcher = QAbstractEventDispatcher::instance()) {
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &X11Session::readEvents);
        connect(dispatcher, &QAbstractEventDispatcher::awake, this, &X11Session::readEvents);
    }
}

void X11Session::readEvents()
{
    for (;;) {
        XcbPointer<xcb_generic_event_t> event(xcb_poll_for_event(xcb()));
        if (!event) {
            m_connection->flush();
            // Sending may have read what arrived meanwhile.
            event.reset(xcb_poll_for_queued_event(xcb()));
        }
        if (!event)
            break;
        if ((event->response_type & 0x7fU) == XCB_PROPERTY_NOTIFY) {
            const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
            if (change->window == m_window)
                m_lastTime = change->time;
        }
        emit eventReceived(event.get());
    }
    if (m_connection->isBroken())
        m_notifier.setEnabled(false);
}

xcb_timestamp_t X11Session::serverTime()
{
    xcb_change_property(xcb(), XCB_PROP_MODE_APPEND, m_window, m_connection->atom("TESSALY_TIME"), XCB_ATOM_INTEGER, 32,
                        0, nullptr);
    m_connection->synchronize();
    readEvents();
    return m_lastTime;
}

xcb_window_t X11Session::activeWindow()
{
    const auto words = m_connection->words(root(), m_connection->atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 1);
    return words.empty() ? static_cast<xcb_window_t>(XCB_WINDOW_NONE) : words.front();
}

xcb_window_t X11Session::focusWindow()
{
    const XcbPointer<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(xcb(), xcb_get_input_focus(xcb()), nullptr));
    if (!reply || reply->focus == XCB_INPUT_FOCUS_POINTER_ROOT || reply->focus == root())
        return XCB_WINDOW_NONE;
    return reply->focus;
}

X11Session::Pointer X11Session::pointer() const
{
    const XcbPointer<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(xcb(), xcb_query_pointer(xcb(), m_connection->root()), nullptr));
    return reply ? Pointer{{reply->root_x, reply->root_y}, reply->child} : Pointer();
}

xcb_window_t X11Session::windowAtPointer() const
{
    xcb_window_t found = m_connection->root();
    for (int depth = 0; depth < maxWindowDepth; ++depth) {
        const XcbPointer<xcb_query_pointer_reply_t> reply(
            xcb_query_pointer_reply(xcb(), xcb_query_pointer(xcb(), found), nullptr));
        if (!reply || reply->child == XCB_WINDOW_NONE)
            break;
        found = reply->child;
    }
    return found;
}

QRect X11Session::geometry(xcb_window_t window) const
{
    const auto sizeCookie = xcb_get_geometry(xcb(), window);
    const auto placeCookie = xcb_translate_coordinates(xcb(), window, root(), 0, 0);
    const XcbPointer<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(xcb(), sizeCookie, nullptr));
    const XcbPointer<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(xcb(), placeCookie, nullptr));
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

bool X11Session::isDesktop(xcb_window_t window)
{
    const auto types =
        m_connection->words(window, m_connection->atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, maxWindowTypes);
    return std::ranges::find(types, m_connection->atom("_NET_WM_WINDOW_TYPE_DESKTOP")) != types.end();
}

bool X11Session::isWindow(xcb_window_t window)
{
    const XcbPointer<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(xcb(), xcb_get_window_attributes(xcb(), window), nullptr));
    return reply != nullptr;
}

bool X11Session::isOurs(xcb_window_t window)
{
    const auto words = m_connection->words(window, m_connection->atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 1);
    return !words.empty() && words.front() == static_cast<uint32_t>(::getpid());
}

bool X11Session::isInside(xcb_window_t inner, xcb_window_t outer) const
{
    for (int depth = 0; depth < maxWindowDepth && inner != outer && inner != XCB_WINDOW_NONE; ++depth)
        inner = parentOf(inner);
    return inner == outer;
}

xcb_window_t X11Session::parentOf(xcb_window_t window) const
{
    const XcbPointer<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(xcb(), xcb_query_tree(xcb(), window), nullptr));
    return reply ? reply->parent : xcb_window_t(XCB_WINDOW_NONE);
}

WindowClass X11Session::windowClassAround(xcb_window_t window) const
{
    WindowClass found = windowClass(window);
    for (int depth = 0; depth < maxWindowDepth && found.name.isEmpty() && window != XCB_WINDOW_NONE; ++depth) {
        window = parentOf(window);
        found = windowClass(window);
    }
    return found;
}

WindowClass X11Session::windowClass(xcb_window_t window) const
{
    const auto reply = m_connection->property(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, maxClassWords);
    if (!reply || reply->format != 8)
        return {};
    const QByteArray value(static_cast<const char*>(xcb_get_property_value(reply.get())),
                           xcb_get_property_value_length(reply.get()));
    const auto parts = value.split('\0');
    return {parts.value(0), parts.value(1)};
}

bool X11Session::hasActivation()
{
    const auto hints =
        m_connection->words(root(), m_connection->atom("_NET_SUPPORTED"), XCB_ATOM_ATOM, maxSupportedHints);
    return std::ranges::find(hints, m_connection->atom("_NET_ACTIVE_WINDOW")) != hints.end();
}

void X11Session::activate(xcb_window_t window)
{
    const xcb_timestamp_t time = serverTime();
    if (!hasActivation()) {
        xcb_set_input_focus(xcb(), XCB_INPUT_FOCUS_POINTER_ROOT, window, time);
        m_connection->flush();
        return;
    }
    constexpr uint32_t sourceIsUser = 2; // as a pager asks: at the user's wish, so it is not refused
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = m_connection->atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = sourceIsUser;
    message.data.data32[1] = time;
    xcb_send_event(xcb(), 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    m_connection->flush();
}

} // namespace Clipboard::X11
