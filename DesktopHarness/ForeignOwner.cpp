#include "ForeignOwner.h"

#include <chrono>

namespace Clipboard::Testing {

using Manner = ForeignOwner::Answer::Manner;

ForeignOwner::ForeignOwner(const QByteArray& display, const QByteArray& selection)
    : m_connection(X11::XcbConnection::open(display))
    , m_window(m_connection->createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE))
    , m_selection(m_connection->atom(selection))
    , m_thread([this] { run(); })
{
}

ForeignOwner::~ForeignOwner()
{
    m_isDead = true;
    m_thread.join();
}

void ForeignOwner::offer(const QHash<QByteArray, Answer>& answers)
{
    const std::scoped_lock lock(m_mutex);
    m_answers = answers;
}

void ForeignOwner::take()
{
    const std::scoped_lock lock(m_mutex);
    m_asked.clear();
    xcb_set_selection_owner(m_connection->get(), m_window, m_selection, XCB_CURRENT_TIME);
    m_connection->synchronize();
}

void ForeignOwner::clear()
{
    const std::scoped_lock lock(m_mutex);
    xcb_set_selection_owner(m_connection->get(), XCB_WINDOW_NONE, m_selection, XCB_CURRENT_TIME);
    m_connection->synchronize();
}

void ForeignOwner::die()
{
    const std::scoped_lock lock(m_mutex);
    m_isDead = true;
    m_connection.reset();
}

bool ForeignOwner::save()
{
    m_saved = -1;
    {
        const std::scoped_lock lock(m_mutex);
        xcb_convert_selection(m_connection->get(), m_window, m_connection->atom("CLIPBOARD_MANAGER"),
                              m_connection->atom("SAVE_TARGETS"), m_connection->atom("SAVED"), XCB_CURRENT_TIME);
        m_connection->flush();
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (m_saved < 0 && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return m_saved == 1;
}

bool ForeignOwner::ownsSelection()
{
    const std::scoped_lock lock(m_mutex);
    const auto cookie = xcb_get_selection_owner(m_connection->get(), m_selection);
    const X11::XcbPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_connection->get(), cookie, nullptr));
    return reply && reply->owner == m_window;
}

QList<QByteArray> ForeignOwner::asked()
{
    const std::scoped_lock lock(m_mutex);
    return m_asked;
}

void ForeignOwner::run()
{
    while (!m_isDead) {
        bool isIdle = true;
        {
            const std::scoped_lock lock(m_mutex);
            while (m_connection) {
                const X11::XcbPointer<xcb_generic_event_t> event(xcb_poll_for_event(m_connection->get()));
                if (!event)
                    break;
                isIdle = false;
                handle(*event);
            }
            if (m_connection)
                m_connection->flush();
        }
        if (isIdle)
            std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
}

void ForeignOwner::handle(const xcb_generic_event_t& event)
{
    const uint8_t type = event.response_type & 0x7fU;
    if (type == XCB_SELECTION_REQUEST) {
        answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    } else if (type == XCB_SELECTION_NOTIFY) {
        m_saved = reinterpret_cast<const xcb_selection_notify_event_t&>(event).property != XCB_ATOM_NONE ? 1 : 0;
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        for (Sending& sending : m_sending) {
            if (change.state == XCB_PROPERTY_DELETE && change.window == sending.requestor &&
                change.atom == sending.property && m_connection)
                sendPiece(sending);
        }
        m_sending.removeIf([](const Sending& sending) { return sending.isFinished; });
    }
}

void ForeignOwner::answer(const xcb_selection_request_event_t& request)
{
    const QByteArray target = m_connection->atomNames({&request.target, 1}).front();
    m_asked.append(target);
    if (target == "TARGETS" && !m_answers.contains(target)) {
        QByteArray list;
        for (auto name = m_answers.keyBegin(); name != m_answers.keyEnd(); ++name) {
            const xcb_atom_t atom = m_connection->atom(*name);
            list.append(reinterpret_cast<const char*>(&atom), sizeof atom);
        }
        put(request.requestor, request.property, XCB_ATOM_ATOM, 32, list);
        notify(request, request.property);
        return;
    }
    const auto found = m_answers.constFind(target);
    if (found == m_answers.constEnd() || found->manner == Manner::Refuse) {
        notify(request, XCB_ATOM_NONE);
        return;
    }
    Answer answer = *found;
    if (answer.type.isEmpty())
        answer.type = target;
    if (answer.manner == Manner::Mute)
        return;
    if (answer.manner == Manner::AtOnce) {
        put(request.requestor, request.property, m_connection->atom(answer.type), answer.format, answer.bytes);
        notify(request, request.property);
        return;
    }
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection->get(), request.requestor, XCB_CW_EVENT_MASK, &mask);
    const auto size = answer.announcedBytes != 0 ? answer.announcedBytes : static_cast<uint32_t>(answer.bytes.size());
    put(request.requestor, request.property, m_connection->atom("INCR"), 32,
        {reinterpret_cast<const char*>(&size), sizeof size});
    m_sending.append({request.requestor, request.property, answer});
    notify(request, request.property);
}

void ForeignOwner::sendPiece(Sending& sending)
{
    const Answer& answer = sending.answer;
    if (sending.pieces == 2 && answer.manner == Manner::StallInTheMiddle)
        return;
    if (sending.pieces == 2 && answer.manner == Manner::DieInTheMiddle) {
        m_isDead = true;
        m_connection.reset();
        return;
    }
    if (answer.manner == Manner::EndlessPieces)
        sending.sent = 0;
    const QByteArray piece = answer.bytes.mid(sending.sent, answer.pieceBytes);
    put(sending.requestor, sending.property, m_connection->atom(answer.type), answer.format, piece);
    sending.sent += piece.size();
    sending.isFinished = piece.isEmpty();
    ++sending.pieces;
}

void ForeignOwner::put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format, const QByteArray& bytes)
{
    xcb_change_property(m_connection->get(), XCB_PROP_MODE_REPLACE, window, property, type,
                        static_cast<uint8_t>(format), static_cast<uint32_t>(bytes.size() / (format / 8)),
                        bytes.constData());
}

void ForeignOwner::notify(const xcb_selection_request_event_t& request, xcb_atom_t property)
{
    union {
        xcb_selection_notify_event_t event;
        char wire[32];
    } message = {};
    message.event.response_type = XCB_SELECTION_NOTIFY;
    message.event.time = request.time;
    message.event.requestor = request.requestor;
    message.event.selection = request.selection;
    message.event.target = request.target;
    message.event.property = property;
    xcb_send_event(m_connection->get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, message.wire);
}

} // namespace Clipboard::Testing
