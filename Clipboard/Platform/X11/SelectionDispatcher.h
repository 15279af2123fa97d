#pragma once

#include "OutgoingTransfers.h"
#include "SelectionOwner.h"
#include "SelectionReader.h"

#include <deque>
#include <functional>

namespace Clipboard::X11 {

/// The clipboard of one X server: follows its owner, reads what others put there, owns what we put there, keeps alive
/// what a program leaves behind and answers as the session's clipboard manager. Single-threaded; fed with X events.
class SelectionDispatcher final
{
public:
    using Clock = std::chrono::steady_clock;
    using PublishFunction = std::function<void(const SelectionSnapshot&)>;

    /// Begins to watch: every change of ownership after the constructor returns is seen.
    SelectionDispatcher(std::unique_ptr<XcbConnection> connection, const SelectionReader::Options& options,
                        PublishFunction publish);

    [[nodiscard]] const XcbConnection& connection() const { return *m_connection; }

    /// Handles what has arrived. True when it stopped early and more may be waiting.
    bool handleEvents();
    [[nodiscard]] std::optional<Clock::time_point> deadline() const;
    void expire(Clock::time_point now);

    /// Offers the content on the clipboard. `write` is the running number of our writes.
    void own(const SelectionForms& forms, quint64 write);
    /// Calls `done` once the writes before it are in force; with `primaryToo` the primary selection is then ours too,
    /// with the clipboard's content.
    void afterWrites(bool primaryToo, const std::function<void()>& done);
    /// Gives up what would keep other programs waiting for us.
    void shutDown();

private:
    using TimedAction = std::function<void(xcb_timestamp_t)>;

    void becomeManager();
    void readInitialContent();
    void withServerTime(TimedAction action);
    void dispatch(const xcb_generic_event_t& event);
    void ownerChanged(const xcb_generic_event_t& event);
    void ownerGone(bool isDeliberate, xcb_timestamp_t ownedSince);
    void propertyChanged(const xcb_property_notify_event_t& event);
    void requested(const xcb_selection_request_event_t& request);
    void cleared(const xcb_selection_clear_event_t& event);
    [[nodiscard]] SelectionOwner* ownerOf(xcb_atom_t selection);
    [[nodiscard]] xcb_window_t currentOwner(xcb_atom_t selection) const;
    void answerHeldSaves();
    void publish(const SelectionContent& content);

    std::unique_ptr<XcbConnection> m_connection;
    PublishFunction m_publish;
    xcb_window_t m_window;
    uint8_t m_ownerChangedEvent = 0;
    xcb_atom_t m_timeProperty;
    OutgoingTransfers m_transfers;
    SelectionOwner m_clipboard;
    SelectionOwner m_primary;
    SelectionOwner m_manager;
    SelectionReader m_reader;
    quint64 m_writes = 0;
    bool m_isInitial = true;
    std::deque<TimedAction> m_waitingForTime;
    std::vector<xcb_selection_request_event_t> m_heldSaves;
};

} // namespace Clipboard::X11
