#include "SelectionOwner.h"

#include <csignal>
#include <cstdlib>
#include <memory>
#include <sys/prctl.h>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>

namespace Clipboard::Testing {

namespace {

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

quint32 internAtom(xcb_connection_t* connection, const QByteArray& name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.constData());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : XCB_NONE;
}

quint32 makeWindow(xcb_connection_t* connection)
{
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const quint32 window = xcb_generate_id(connection);
    xcb_create_window(connection, 0, window, screen->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      screen->root_visual, 0, nullptr);
    return window;
}

} // namespace

SelectionOwner::SelectionOwner(const QString& display)
    : m_connection(xcb_connect(display.toLatin1().constData(), nullptr))
    , m_window(makeWindow(m_connection))
{
    m_thread = std::thread([this] { serve(); });
}

SelectionOwner::~SelectionOwner()
{
    xcb_client_message_event_t wakeUp{};
    wakeUp.response_type = XCB_CLIENT_MESSAGE;
    wakeUp.format = 8;
    wakeUp.window = m_window;
    xcb_send_event(m_connection, 0, m_window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&wakeUp));
    xcb_flush(m_connection);
    m_thread.join();
    xcb_disconnect(m_connection);
}

void SelectionOwner::copy(const QList<Offer>& offers)
{
    std::map<quint32, Offer> byTarget;
    for (const Offer& offer : offers) {
        byTarget.emplace(atom(offer.first), offer);
    }
    const quint32 clipboard = atom("CLIPBOARD");
    {
        const std::lock_guard lock(m_mutex);
        m_offers = std::move(byTarget);
        m_requests.clear();
    }
    xcb_set_selection_owner(m_connection, m_window, clipboard, XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

void SelectionOwner::clear()
{
    xcb_set_selection_owner(m_connection, XCB_NONE, atom("CLIPBOARD"), XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

QByteArrayList SelectionOwner::requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

int SelectionOwner::copyAndStop(const QString& display)
{
    const QByteArray name = display.toLatin1();
    const pid_t child = fork();
    if (child != 0) {
        return child;
    }
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    xcb_connection_t* connection = xcb_connect(name.constData(), nullptr);
    xcb_set_selection_owner(connection, makeWindow(connection), internAtom(connection, "CLIPBOARD"), XCB_CURRENT_TIME);
    xcb_flush(connection);
    raise(SIGSTOP);
    _exit(0);
}

quint32 SelectionOwner::atom(const QByteArray& name) const
{
    return internAtom(m_connection, name);
}

void SelectionOwner::serve()
{
    while (const Reply<xcb_generic_event_t> event{xcb_wait_for_event(m_connection), &std::free}) {
        switch (event->response_type & 0x7f) {
        case XCB_SELECTION_REQUEST:
            answer(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
            break;
        case XCB_CLIENT_MESSAGE:
            return;
        default:
            break;
        }
    }
}

void SelectionOwner::answer(const xcb_selection_request_event_t& request)
{
    const quint32 targets = atom("TARGETS");
    const std::lock_guard lock(m_mutex);
    const auto offer = m_offers.find(request.target);
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = request.property;
    if (request.target == targets) {
        m_requests.append("TARGETS");
        std::vector<quint32> atoms{targets};
        for (const auto& [target, content] : m_offers) {
            atoms.push_back(target);
        }
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property, XCB_ATOM_ATOM, 32,
                            static_cast<quint32>(atoms.size()), atoms.data());
    } else if (offer != m_offers.end()) {
        m_requests.append(offer->second.first);
        const QByteArray& content = offer->second.second;
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property, request.target, 8,
                            static_cast<quint32>(content.size()), content.constData());
    } else {
        notify.property = XCB_NONE;
    }
    xcb_send_event(m_connection, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&notify));
    xcb_flush(m_connection);
}

} // namespace Clipboard::Testing
