#include "MainThreadProbe.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <utility>
#include <xcb/xcb.h>

namespace Clipboard::Benchmarks {

namespace {

using Clock = std::chrono::steady_clock;

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

constexpr auto pause = std::chrono::milliseconds(1);

quint32 atom(xcb_connection_t* connection, const char* name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(qstrlen(name)), name);
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : XCB_NONE;
}

} // namespace

MainThreadProbe::MainThreadProbe(QString display, quint32 window)
    : m_display(std::move(display))
    , m_window(window)
{
    m_thread = std::thread([this] { run(); });
}

MainThreadProbe::~MainThreadProbe()
{
    longestStall();
}

double MainThreadProbe::longestStall()
{
    m_stop = true;
    if (m_thread.joinable()) {
        m_thread.join();
    }
    return m_longest;
}

void MainThreadProbe::run()
{
    xcb_connection_t* connection = xcb_connect(m_display.toLatin1().constData(), nullptr);
    const quint32 root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const quint32 events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection, root, XCB_CW_EVENT_MASK, &events);
    xcb_client_message_event_t ping{};
    ping.response_type = XCB_CLIENT_MESSAGE;
    ping.format = 32;
    ping.window = m_window;
    ping.type = atom(connection, "WM_PROTOCOLS");
    ping.data.data32[0] = atom(connection, "_NET_WM_PING");
    ping.data.data32[2] = m_window;

    for (quint32 serial = 1; !m_stop; ++serial) {
        ping.data.data32[1] = serial;
        const Clock::time_point asked = Clock::now();
        xcb_send_event(connection, 0, m_window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&ping));
        xcb_flush(connection);
        bool answered = false;
        while (!answered && !m_stop) {
            while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection), &std::free}) {
                const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
                answered =
                    answered || ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE &&
                                 message.data.data32[0] == ping.data.data32[0] && message.data.data32[1] == serial);
            }
            const double waited = std::chrono::duration<double, std::milli>(Clock::now() - asked).count();
            m_longest = std::max(m_longest.load(), waited);
            if (!answered) {
                pollfd descriptor{xcb_get_file_descriptor(connection), POLLIN, 0};
                poll(&descriptor, 1, 1);
            }
        }
        std::this_thread::sleep_for(pause);
    }
    xcb_disconnect(connection);
}

} // namespace Clipboard::Benchmarks
