#pragma once

#include "ClipboardDispatcher.h"
#include "ClipboardManager.h"
#include "OutgoingTransfers.h"
#include "SelectionOwner.h"
#include "SelectionReader.h"

#include <deque>
#include <functional>

namespace Clipboard::X11 {

/// The clipboard of one X server; answers as the session's clipboard manager, too.
class SelectionDispatcher final : public ClipboardDispatcher
{
public:
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

    [[nodiscard]] bool isAlive() const override { return !m_isWindowGone && !m_connection->isBroken(); }
    [[nodiscard]] std::any remains() const override;

    [[nodiscard]] std::vector<pollfd> sources() const override;
    bool handleEvents() override;
    [[nodiscard]] std::optional<Clock::time_point> deadline() const override;
    void expire(Clock::time_point now) override;

    void own(const SelectionForms& forms, quint64 write) override;
    void afterWrites(bool primaryToo, const std::function<void()>& done) override;
    void settle(const std::function<void()>& done) override;
    /// See ClipboardManager::handOver(); at once when the clipboard is not ours.
    void handOver(const std::function<void()>& done) override;
    void shutDown() override;

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
    /// Nothing more is asked of the owner: who waits for its content to be kept is told what there is, or the owner
    /// that refused to be read is asked again as long as they wait.
    void readingSettled();
    /// Tells those that wait for the reading to come to an end.
    void tellWaiting();
    [[nodiscard]] bool hasWindows() const;
    [[nodiscard]] bool takeOver(xcb_timestamp_t ownedSince);
    void takeOverLater(Clock::time_point now);
    [[nodiscard]] bool belongsToTheOwner(xcb_window_t window) const;
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
    xcb_window_t m_owner = XCB_WINDOW_NONE;  // the last one
    bool m_mayTakeBack = false;              // nothing to come would be what the owner makes of its own content
    struct TakeOver
    {
        Clock::time_point at;
        xcb_timestamp_t ownedSince = XCB_CURRENT_TIME;
    };
    std::optional<TakeOver> m_takeOver;        // when there were too many
    std::deque<Clock::time_point> m_takeOvers; // the last ones
    std::deque<TimedAction> m_waitingForTime;
    std::vector<std::function<void()>> m_settling;
    std::optional<Clock::time_point> m_nextAttempt; // to read what was refused
};

} // namespace Clipboard::X11
