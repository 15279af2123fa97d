#include "IncomingTransfer.h"

namespace Clipboard::X11 {

namespace {

// An owner announces at least how much it is going to send. It may lie: this much is believed in advance.
constexpr qint64 maxReservedBytes = qint64(64) * 1024 * 1024;

uint32_t wordsFor(qint64 bytes)
{
    return static_cast<uint32_t>(bytes / 4 + 1);
}

} // namespace

TransferWindows::TransferWindows(XcbConnection& connection)
    : m_connection(connection)
    , m_property(connection.atom("TESSALY_TRANSFER"))
    , m_slots(count)
{
}

xcb_window_t TransferWindows::next()
{
    Slot& slot = m_slots[m_next];
    if (slot.window == XCB_WINDOW_NONE)
        slot.window = m_connection.createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    slot.discarded = 0;
    m_next = (m_next + 1) % count;
    m_last = slot.window;
    return m_last;
}

void TransferWindows::discard(xcb_window_t window)
{
    for (Slot& slot : m_slots) {
        if (slot.window == window && slot.discarded < maxDiscardedPieces) {
            ++slot.discarded;
            xcb_delete_property(m_connection.get(), window, m_property);
        }
    }
}

IncomingTransfer::IncomingTransfer(XcbConnection& connection, const Request& request)
    : m_connection(connection)
    , m_request(request)
{
    xcb_delete_property(m_connection.get(), request.requestor, request.property);
    xcb_convert_selection(m_connection.get(), request.requestor, request.selection, request.target, request.property,
                          request.time);
}

bool IncomingTransfer::handle(const xcb_selection_notify_event_t& event)
{
    if (m_state != State::Waiting || event.requestor != m_request.requestor || event.selection != m_request.selection ||
        event.target != m_request.target ||
        (event.property != m_request.property && event.property != XCB_ATOM_NONE)) // a refusal names none
        return false;
    m_state = State::Failed;
    if (event.property == XCB_ATOM_NONE)
        return true;
    const auto reply = takeProperty();
    if (!reply)
        return true;
    if (reply->type == m_connection.atom("INCR")) {
        const auto* announced = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
        const qint64 size = reply->format == 32 && reply->value_len > 0 ? announced[0] : 0;
        if (size > m_request.maxBytes)
            return true;
        m_bytes.reserve(qMin(size, maxReservedBytes));
        m_state = State::Incremental;
        return true;
    }
    if (reply->type != XCB_ATOM_NONE && append(*reply))
        m_state = State::Done;
    return true;
}

bool IncomingTransfer::handle(const xcb_property_notify_event_t& event)
{
    if (m_state != State::Incremental || event.window != m_request.requestor || event.atom != m_request.property ||
        event.state != XCB_PROPERTY_NEW_VALUE)
        return false;
    const auto reply = takeProperty();
    if (!reply) {
        m_state = State::Failed;
        return true;
    }
    // Announced twice and taken with the first: nothing is left of the second.
    if (reply->type == XCB_ATOM_NONE)
        return true;
    if (reply->value_len == 0) {
        m_state = State::Done;
        if (m_bytes.capacity() > 2 * m_bytes.size())
            m_bytes.squeeze();
    } else if (!append(*reply))
        m_state = State::Failed;
    return true;
}

/// Fetches the property and deletes it in the same step, which tells the owner to go on.
XcbPointer<xcb_get_property_reply_t> IncomingTransfer::takeProperty()
{
    const auto cookie = xcb_get_property(m_connection.get(), 1, m_request.requestor, m_request.property,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, wordsFor(m_request.maxBytes - m_bytes.size()));
    XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection.get(), cookie, nullptr));
    // The server deletes only what was fetched to its end.
    if (reply && reply->bytes_after > 0) {
        xcb_delete_property(m_connection.get(), m_request.requestor, m_request.property);
        return nullptr;
    }
    return reply;
}

bool IncomingTransfer::append(const xcb_get_property_reply_t& reply)
{
    if (m_type == XCB_ATOM_NONE) {
        m_type = reply.type;
        m_format = reply.format;
    }
    const qint64 length = xcb_get_property_value_length(&reply);
    if (reply.type != m_type || reply.format != m_format || m_bytes.size() + length > m_request.maxBytes)
        return false;
    m_bytes.append(static_cast<const char*>(xcb_get_property_value(&reply)), length);
    return true;
}

} // namespace Clipboard::X11
