#pragma once

#include "TransferLimits.h"
#include "XcbConnection.h"

#include <QByteArray>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace Clipboard::X11 {

/// Replies on their way to other programs: small ones at once, large ones piece by piece as their requestors fetch them
/// (INCR, ICCCM 2.7.2), as many at the same time as their bytes allow. A transfer holds its bytes: it ends well after
/// the selection is lost.
class OutgoingTransfers final
{
public:
    using Clock = std::chrono::steady_clock;

    struct Reply
    {
        xcb_window_t requestor = XCB_WINDOW_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;
        xcb_atom_t type = XCB_ATOM_NONE;
        int format = 8;
        std::shared_ptr<const QByteArray> bytes;
    };

    OutgoingTransfers(XcbConnection& connection, std::chrono::milliseconds stepTimeout);

    /// Writes the reply, or the first step of it, into the requestor's property. False when it cannot be taken on.
    [[nodiscard]] bool send(const Reply& reply);

    void handle(const xcb_property_notify_event_t& event);
    /// The requestor's window is gone.
    void windowGone(xcb_window_t window);
    [[nodiscard]] std::optional<Clock::time_point> deadline() const;
    void expire(Clock::time_point now);

private:
    struct Transfer
    {
        Reply reply;
        qsizetype sent = 0;
        Clock::time_point deadline;
        bool isFinished = false; // the empty piece that marks the end has been written
    };

    void sendPiece(Transfer& transfer);
    [[nodiscard]] bool hasRoomFor(const QByteArray& bytes) const;
    void watch(xcb_window_t window, bool on);
    void removeIf(const std::function<bool(const Transfer&)>& isOver);

    XcbConnection& m_connection;
    std::chrono::milliseconds m_stepTimeout;
    qint64 m_maxDirectBytes;
    std::vector<Transfer> m_transfers;
};

} // namespace Clipboard::X11
