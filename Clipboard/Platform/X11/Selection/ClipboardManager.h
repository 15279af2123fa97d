#pragma once

#include "SelectionOwner.h"

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace Clipboard::X11 {

/// Both sides of the session's clipboard manager (freedesktop.org, "Clipboard Manager Specification"): while we run we
/// are it and tell programs that end when their content is kept; when we end ourselves we ask another one to keep ours.
class ClipboardManager final
{
public:
    using Clock = std::chrono::steady_clock;

    /// A program that wants to end is kept waiting for `saveHold` at most. `kept` answers the targets, as atoms, of
    /// what would outlive its owner as of now; nothing while there is none.
    ClipboardManager(XcbConnection& connection, OutgoingTransfers& transfers, xcb_window_t window,
                     std::chrono::milliseconds saveHold, std::function<std::optional<QByteArray>()> kept);

    [[nodiscard]] SelectionOwner& selection() { return m_manager; }

    /// Takes the role and announces it.
    void become(xcb_timestamp_t time);
    void requested(const xcb_selection_request_event_t& request);
    [[nodiscard]] bool isHoldingSaves() const { return !m_heldSaves.empty(); }
    /// Nothing more is going to be read for now: whoever waits hears what has been kept.
    void answerHeldSaves();

    /// Gives the role up and asks whoever takes it, or has it, to keep `forms`, which is the content of the clipboard.
    /// Calls `done` when that is so, or is known not to come about.
    void handOver(const SelectionForms& forms, xcb_timestamp_t time, std::function<void()> done);
    [[nodiscard]] bool isHandingOver() const { return m_handingOver.has_value(); }
    /// There is another manager, or none (XCB_WINDOW_NONE).
    void managerChanged(xcb_window_t owner);
    /// The answer of the other manager.
    void handle(const xcb_selection_notify_event_t& event);

    [[nodiscard]] std::optional<Clock::time_point> deadline() const;
    void expire(Clock::time_point now);
    /// Lets nobody wait for us any longer.
    void shutDown();

private:
    struct HeldSave
    {
        xcb_selection_request_event_t request;
        Clock::time_point deadline;
    };
    struct HandingOver
    {
        std::vector<xcb_atom_t> targets;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        std::function<void()> done;
        bool isAsked = false;
        Clock::time_point deadline;
    };

    void ask();
    void finishHandingOver();

    XcbConnection& m_connection;
    xcb_window_t m_window;
    std::chrono::milliseconds m_saveHold;
    std::function<std::optional<QByteArray>()> m_kept;
    SelectionOwner m_manager;
    std::vector<HeldSave> m_heldSaves; // the one that waits the longest first
    std::optional<HandingOver> m_handingOver;
};

} // namespace Clipboard::X11
