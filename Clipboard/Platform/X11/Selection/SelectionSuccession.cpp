#include "SelectionDispatcher.h"

#include <xcb/xfixes.h>

#include <utility>

/// The part of the clipboard's engine that follows its owners, and takes the place of those that end.
namespace Clipboard::X11 {

void SelectionDispatcher::ownerChanged(const xcb_generic_event_t& event)
{
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (change.selection == m_manager.selection().selection())
        m_manager.managerChanged(change.owner);
    if (change.selection != m_clipboard.selection())
        return;
    m_isInitial = false;
    m_known.reset();
    const bool isDeliberate = change.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER;
    m_mayTakeBack = isDeliberate && m_reader.content() && belongsToTheOwner(change.owner);
    m_owner = change.owner;
    m_takeOver.reset();
    if (change.owner == m_window) {
        m_reader.cancel();
    } else if (change.owner != XCB_WINDOW_NONE) {
        m_reader.start(change.selection, change.selection_timestamp);
    } else {
        ownerGone(isDeliberate, change.selection_timestamp);
    }
    if (!m_reader.isBusy())
        m_manager.answerHeldSaves();
}

/// A program that gave the clipboard up wanted it empty. One that ended did not: what was read of its content takes its
/// place, as of the same time, so that no copy made meanwhile is pushed aside.
void SelectionDispatcher::ownerGone(bool isDeliberate, xcb_timestamp_t ownedSince)
{
    if (!isDeliberate && m_clipboard.isOwned())
        return; // it is we who are being cut off
    if (!isDeliberate && m_reader.hasContent() && takeOver(ownedSince))
        return;
    m_reader.cancel();
    publish({});
}

/// True when that is done, put off, or somebody has copied meanwhile, of whom we are about to hear.
bool SelectionDispatcher::takeOver(xcb_timestamp_t ownedSince)
{
    const auto now = Clock::now();
    while (!m_takeOvers.empty() && m_takeOvers.front() + takeOverPeriod <= now)
        m_takeOvers.pop_front();
    if (m_takeOvers.size() >= takeOversAtOnce) {
        m_takeOver = {m_takeOvers.front() + takeOverPeriod, ownedSince};
        return true;
    }
    m_takeOvers.push_back(now);
    return m_clipboard.own(m_reader.keptForms(), ownedSince) ||
           m_connection->selectionOwner(m_clipboard.selection()) != XCB_WINDOW_NONE;
}

void SelectionDispatcher::takeOverLater(Clock::time_point now)
{
    if (!m_takeOver || m_takeOver->at > now)
        return;
    const TakeOver due = *std::exchange(m_takeOver, {});
    if (m_reader.hasContent() && takeOver(due.ownedSince))
        return;
    m_reader.cancel();
    publish({});
}

/// Or nobody took its place: then who gave the clipboard up was the owner.
bool SelectionDispatcher::belongsToTheOwner(xcb_window_t window) const
{
    return window == XCB_WINDOW_NONE || m_connection->areOfOneClient(window, m_owner);
}

} // namespace Clipboard::X11
