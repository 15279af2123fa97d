#pragma once

#include "ClipboardManager.h"
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

    struct Options
    {
        SelectionReader::Options reading;
        std::chrono::milliseconds writeTimeout = writeStepTimeout;
        std::chrono::milliseconds saveHold = maxSaveHold;
    };

    /// What one connection leaves to the next when it is lost.
    struct Remains
    {
        std::optional<SelectionForms> own; // what we had on the clipboard
        xcb_timestamp_t ownSince = XCB_CURRENT_TIME;
        quint64 writes = 0;
        std::optional<SelectionForms> unfinishedWrite; // on its way to the clipboard
        quint64 unfinishedNumber = 0;
        std::optional<SelectionContent> known; // what another program had there, as far as it was told of
        bool isInitial = true;
    };

    /// Begins to watch: every change of ownership after the constructor returns is seen. With what an earlier one left,
    /// its content is offered again, and a copy that nobody saw meanwhile is a change.
    SelectionDispatcher(std::unique_ptr<XcbConnection> connection, const Options& options, PublishFunction publish,
                        const std::optional<Remains>& remains = {});

    [[nodiscard]] const XcbConnection& connection() const { return *m_connection; }
    /// False once the connection or our window on it is gone; nothing works then.
    [[nodiscard]] bool isAlive() const { return !m_isWindowGone && !m_connection->isBroken(); }
    [[nodiscard]] Remains remains() const;

    /// Handles what has arrived. True when it stopped early and more may be waiting.
    bool handleEvents();
    [[nodiscard]] std::optional<Clock::time_point> deadline() const;
    void expire(Clock::time_point now);

    /// Offers the content on the clipboard. `write` is the running number of our writes.
    void own(const SelectionForms& forms, quint64 write);
    /// Calls `done` once the writes before it are in force; with `primaryToo` the primary selection is then ours too,
    /// with the clipboard's content.
    void afterWrites(bool primaryToo, const std::function<void()>& done);
    /// Calls `done` once every copy made before has been published, or is known not to be readable. An owner that hangs
    /// is given up sooner.
    void settle(const std::function<void()>& done);
    /// See ClipboardManager::handOver(); at once when the clipboard is not ours. Publishes nothing from then on.
    void handOver(const std::function<void()>& done);
    /// Gives up what would keep other programs waiting for us.
    void shutDown();

private:
    using TimedAction = std::function<void(xcb_timestamp_t)>;

    void watchOwners();
    void resume(const Remains& remains);
    void readContentThere();
    void finishWrite(xcb_timestamp_t time);
    void withServerTime(TimedAction action);
    void dispatch(const xcb_generic_event_t& event);
    void ownerChanged(const xcb_generic_event_t& event);
    void ownerGone(bool isDeliberate, xcb_timestamp_t ownedSince);
    void propertyChanged(const xcb_property_notify_event_t& event);
    void requested(const xcb_selection_request_event_t& request);
    void cleared(const xcb_selection_clear_event_t& event);
    [[nodiscard]] SelectionOwner* ownerOf(xcb_atom_t selection);
    /// The targets, as atoms, of what would outlive its owner as of now; nothing while there is none.
    [[nodiscard]] std::optional<QByteArray> keptTargets();
    /// Tells those that wait for the reading to come to an end.
    void tellWaiting();
    [[nodiscard]] bool hasWindow() const;
    void publish(const SelectionContent& content);

    std::unique_ptr<XcbConnection> m_connection;
    PublishFunction m_publish;
    xcb_window_t m_window;
    bool m_isWindowGone = false;
    uint8_t m_ownerChangedEvent = 0;
    xcb_atom_t m_timeProperty;
    OutgoingTransfers m_transfers;
    SelectionOwner m_clipboard;
    SelectionOwner m_primary;
    ClipboardManager m_manager;
    SelectionReader m_reader;
    quint64 m_writes = 0;
    std::optional<SelectionForms> m_unfinishedWrite;
    quint64 m_unfinishedNumber = 0;
    bool m_isInitial = true;
    std::optional<SelectionContent> m_known; // see Remains
    std::deque<TimedAction> m_waitingForTime;
    std::vector<std::function<void()>> m_settling;
};

} // namespace Clipboard::X11
