#pragma once

#include "SelectionLimits.h"
#include "XcbConnection.h"

#include <QByteArray>

namespace Clipboard::X11 {

/// Windows of ours into whose property owners put their replies. Each request gets another one, so that the late reply
/// of one owner is never taken for another's. A property of its own would not do: there are owners that send their next
/// piece whenever any property of the window is deleted (xclip 0.13), and another owner's late reply has to be.
class TransferWindows final
{
public:
    explicit TransferWindows(XcbConnection& connection);

    /// The window that was handed out the longest ago.
    [[nodiscard]] xcb_window_t next();
    /// The one handed out last; XCB_WINDOW_NONE before the first.
    [[nodiscard]] xcb_window_t last() const { return m_last; }
    /// The property of each of them that replies go into.
    [[nodiscard]] xcb_atom_t property() const { return m_property; }
    /// A reply that nobody waits for has arrived. Deleting it lets its owner go on to the end of what it sends; some
    /// would otherwise wait for us for ever.
    void discard(xcb_window_t window);

private:
    // More than there are owners that hang at the same time.
    static constexpr size_t count = 64;
    // Then an owner that never comes to an end is left waiting.
    static constexpr int maxDiscardedPieces = 8192;

    struct Slot
    {
        xcb_window_t window = XCB_WINDOW_NONE;
        int discarded = 0;
    };

    XcbConnection& m_connection;
    xcb_atom_t m_property;
    std::vector<Slot> m_slots;
    size_t m_next = 0;
    xcb_window_t m_last = XCB_WINDOW_NONE;
};

/// One conversion of a selection into one target: the request, the reply, and the pieces of an incremental one
/// (ICCCM 2.4 and 2.7.2). Fed with the events of the requestor window.
class IncomingTransfer final
{
public:
    enum class State { Waiting, Incremental, Done, Failed };

    struct Request
    {
        xcb_window_t requestor = XCB_WINDOW_NONE;
        xcb_atom_t selection = XCB_ATOM_NONE;
        xcb_atom_t target = XCB_ATOM_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        qint64 maxBytes = maxSelectionBytes;
    };

    IncomingTransfer(XcbConnection& connection, const Request& request);

    [[nodiscard]] State state() const { return m_state; }
    [[nodiscard]] const Request& request() const { return m_request; }
    /// What has arrived; meaningful once Done.
    [[nodiscard]] xcb_atom_t type() const { return m_type; }
    [[nodiscard]] int format() const { return m_format; }
    [[nodiscard]] const QByteArray& bytes() const { return m_bytes; }

    /// True when the event belonged to this transfer; its state may have changed then.
    bool handle(const xcb_selection_notify_event_t& event);
    bool handle(const xcb_property_notify_event_t& event);

private:
    [[nodiscard]] XcbPointer<xcb_get_property_reply_t> takeProperty();
    bool append(const xcb_get_property_reply_t& reply);

    XcbConnection& m_connection;
    Request m_request;
    State m_state = State::Waiting;
    xcb_atom_t m_type = XCB_ATOM_NONE;
    int m_format = 0;
    QByteArray m_bytes;
};

} // namespace Clipboard::X11
