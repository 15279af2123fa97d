#include "OutgoingTransfers.h"

#include <QHash>

#include <algorithm>
#include <numeric>

namespace Clipboard::X11 {

OutgoingTransfers::OutgoingTransfers(XcbConnection& connection, std::chrono::milliseconds stepTimeout)
    : m_connection(connection)
    , m_stepTimeout(stepTimeout)
    // ICCCM 2.5 advises a quarter of the largest request; the answer counts words, so it is that many bytes.
    , m_maxDirectBytes(qMin(xcb_get_maximum_request_length(connection.get()), outgoingPieceBytes))
{
}

bool OutgoingTransfers::send(const Reply& reply)
{
    const QByteArray& bytes = *reply.bytes;
    if (bytes.size() > maxSelectionBytes)
        return false;
    // A requestor that asks again into the same property has given up on the earlier reply.
    removeIf([&](const Transfer& other) {
        return other.reply.requestor == reply.requestor && other.reply.property == reply.property;
    });
    if (bytes.size() <= m_maxDirectBytes) {
        const auto units = static_cast<uint32_t>(bytes.size() / (reply.format / 8));
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, reply.requestor, reply.property, reply.type,
                            static_cast<uint8_t>(reply.format), units, bytes.constData());
        return true;
    }
    if (m_transfers.size() >= maxOutgoingTransfers || !hasRoomFor(bytes))
        return false;
    watch(reply.requestor, true);
    const auto size = static_cast<uint32_t>(bytes.size());
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, reply.requestor, reply.property,
                        m_connection.atom("INCR"), 32, 1, &size);
    m_transfers.push_back({reply, 0, Clock::now() + m_stepTimeout, false});
    return true;
}

/// The forms of one content often share their bytes.
bool OutgoingTransfers::hasRoomFor(const QByteArray& bytes) const
{
    QHash<const char*, qint64> held{{bytes.constData(), bytes.size()}};
    for (const Transfer& transfer : m_transfers)
        held.insert(transfer.reply.bytes->constData(), transfer.reply.bytes->size());
    return std::accumulate(held.begin(), held.end(), qint64(0)) <= maxOutgoingBytes;
}

void OutgoingTransfers::handle(const xcb_property_notify_event_t& event)
{
    if (event.state != XCB_PROPERTY_DELETE)
        return;
    const auto found = std::ranges::find_if(m_transfers, [&](const Transfer& transfer) {
        return transfer.reply.requestor == event.window && transfer.reply.property == event.atom;
    });
    if (found != m_transfers.end())
        sendPiece(*found);
    removeIf([](const Transfer& transfer) { return transfer.isFinished; });
}

void OutgoingTransfers::sendPiece(Transfer& transfer)
{
    const Reply& reply = transfer.reply;
    const qsizetype unit = reply.format / 8;
    const qsizetype length = qMin(reply.bytes->size() - transfer.sent, static_cast<qsizetype>(m_maxDirectBytes));
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, reply.requestor, reply.property, reply.type,
                        static_cast<uint8_t>(reply.format), static_cast<uint32_t>(length / unit),
                        reply.bytes->constData() + transfer.sent);
    transfer.sent += length;
    transfer.isFinished = length == 0;
    transfer.deadline = Clock::now() + m_stepTimeout;
}

void OutgoingTransfers::windowGone(xcb_window_t window)
{
    std::erase_if(m_transfers, [window](const Transfer& transfer) { return transfer.reply.requestor == window; });
}

std::optional<OutgoingTransfers::Clock::time_point> OutgoingTransfers::deadline() const
{
    const auto earliest = std::ranges::min_element(m_transfers, {}, &Transfer::deadline);
    return earliest == m_transfers.end() ? std::nullopt : std::optional(earliest->deadline);
}

void OutgoingTransfers::expire(Clock::time_point now)
{
    removeIf([now](const Transfer& transfer) { return transfer.deadline <= now; });
}

/// Asks for the deletions of properties and the end of a foreign window, or asks no more.
void OutgoingTransfers::watch(xcb_window_t window, bool on)
{
    const uint32_t mask = on ? XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY : 0U;
    xcb_change_window_attributes(m_connection.get(), window, XCB_CW_EVENT_MASK, &mask);
}

void OutgoingTransfers::removeIf(const std::function<bool(const Transfer&)>& isOver)
{
    std::vector<xcb_window_t> windows;
    for (const Transfer& transfer : m_transfers) {
        if (isOver(transfer))
            windows.push_back(transfer.reply.requestor);
    }
    std::erase_if(m_transfers, isOver);
    for (const xcb_window_t window : windows) {
        const auto isTo = [window](const Transfer& transfer) { return transfer.reply.requestor == window; };
        if (std::ranges::none_of(m_transfers, isTo))
            watch(window, false);
    }
}

} // namespace Clipboard::X11
