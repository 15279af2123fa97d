#pragma once

#include "ContentReading.h"
#include "IncomingTransfer.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace Clipboard::X11 {

/// Reads one selection of another program, step by step, never waiting for its owner: the target list, the first
/// content worth having, then a few small forms of it that are kept for the day when its owner ends.
class SelectionReader final
{
public:
    using Clock = std::chrono::steady_clock;

    struct Options : ContentReading::Options
    {
        std::chrono::milliseconds stepTimeout = readStepTimeout;
        std::chrono::milliseconds formTimeout = readFormTimeout;
    };

    /// `onContent` hears each selection once, when its content is there or nothing can be had; `onSettled` when nothing
    /// more is going to be asked of the owner.
    SelectionReader(XcbConnection& connection, Options options, std::function<void(SelectionContent)> onContent,
                    std::function<void()> onSettled);

    /// Has less patience with the present owner from now on: `stepTimeout` for each step.
    void hurry(std::chrono::milliseconds stepTimeout);
    /// Begins with a new owner; what was under way is dropped unheard.
    void start(xcb_atom_t selection, xcb_timestamp_t time);
    void cancel();
    /// Asks the present owner once more; heard only if there is content this time.
    void startAgain();
    [[nodiscard]] bool isBusy() const { return m_transfer.has_value(); }
    /// The content of the current selection; nothing while it is still to be found.
    [[nodiscard]] std::optional<SelectionContent> content() const;
    /// True when there is content that can be offered in its owner's place: complete, and no secret.
    [[nodiscard]] bool hasContent() const { return m_stage == Stage::Companions && !m_reading.keptForms().empty(); }
    /// Everything that was read of the current selection.
    [[nodiscard]] const SelectionForms& keptForms() const { return m_reading.keptForms(); }

    /// True when nothing was found because the owner refused to answer: it may do so another time.
    [[nodiscard]] bool wasRefused() const { return m_isRefused && m_stage == Stage::Companions && !hasContent(); }

    /// The window that the last request came from; XCB_WINDOW_NONE before the first.
    [[nodiscard]] xcb_window_t requestor() const { return m_windows.last(); }

    void handle(const xcb_selection_notify_event_t& event);
    void handle(const xcb_property_notify_event_t& event);
    /// When the step under way is over at the latest; nothing when idle.
    [[nodiscard]] std::optional<Clock::time_point> deadline() const;
    void expire(Clock::time_point now);

private:
    enum class Stage { Targets, Content, Companions };
    void request(xcb_atom_t target, qint64 maxBytes);
    void advance();
    void readTargets();
    void leaveWorthALook(std::vector<xcb_atom_t>& targets);
    void next();
    void publish();

    XcbConnection& m_connection;
    Options m_options;
    std::function<void(SelectionContent)> m_onContent;
    std::function<void()> m_onSettled;
    TransferWindows m_windows;

    xcb_atom_t m_selection = XCB_ATOM_NONE;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    std::optional<IncomingTransfer> m_transfer;
    std::chrono::milliseconds m_stepTimeout{};
    Clock::time_point m_stepEnd;
    Clock::time_point m_formEnd;
    Clock::time_point m_end;
    Stage m_stage = Stage::Targets;
    bool m_isRefused = false;
    bool m_isAgain = false;
    ContentReading m_reading;
};

} // namespace Clipboard::X11
