#include "ClipboardManager.h"

#include <algorithm>
#include <utility>

namespace Clipboard::X11 {

namespace {

// Programs that wait to end until their content is safe. One at a time has the clipboard.
constexpr size_t maxHeldSaves = 16;

} // namespace

ClipboardManager::ClipboardManager(XcbConnection& connection, OutgoingTransfers& transfers, xcb_window_t window,
                                   std::chrono::milliseconds saveHold, std::function<std::optional<QByteArray>()> kept)
    : m_connection(connection)
    , m_window(window)
    , m_saveHold(saveHold)
    , m_kept(std::move(kept))
    , m_manager(connection, transfers, window, "CLIPBOARD_MANAGER")
{
}

/// Programs that end ask the owner of this selection to keep their content. One that is there already is left in place.
void ClipboardManager::become(xcb_timestamp_t time)
{
    // The request lists the targets that are wanted; the answer, those that are kept.
    if (m_connection.selectionOwner(m_manager.selection()) != XCB_WINDOW_NONE ||
        !m_manager.own({{"SAVE_TARGETS", "ATOM", 32, m_kept}}, time))
        return;
    xcb_client_message_event_t announcement = {};
    announcement.response_type = XCB_CLIENT_MESSAGE;
    announcement.format = 32;
    announcement.window = m_connection.root();
    announcement.type = m_connection.atom("MANAGER");
    announcement.data.data32[0] = time;
    announcement.data.data32[1] = m_manager.selection();
    announcement.data.data32[2] = m_window;
    xcb_send_event(m_connection.get(), 0, m_connection.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&announcement));
}

void ClipboardManager::requested(const xcb_selection_request_event_t& request)
{
    if (request.target != m_connection.atom("SAVE_TARGETS"))
        m_manager.answer(request);
    else if (m_heldSaves.size() < maxHeldSaves)
        m_heldSaves.push_back({request, Clock::now() + m_saveHold});
    else
        m_manager.refuse(request);
}

void ClipboardManager::answerHeldSaves()
{
    for (const HeldSave& save : std::exchange(m_heldSaves, {}))
        m_manager.answer(save.request);
}

void ClipboardManager::handOver(const SelectionForms& forms, xcb_timestamp_t time, std::function<void()> done)
{
    // A manager that waits for its turn takes the role as soon as it hears that it is free.
    m_handingOver = {targetsOf(m_connection, forms), time, std::move(done), false, Clock::now() + successorTimeout};
    shutDown();
    if (m_connection.selectionOwner(m_manager.selection()) != XCB_WINDOW_NONE)
        ask();
}

void ClipboardManager::managerChanged(xcb_window_t owner)
{
    if (!m_handingOver || owner == m_window)
        return;
    if (owner == XCB_WINDOW_NONE && m_handingOver->isAsked)
        finishHandingOver();
    else if (owner != XCB_WINDOW_NONE)
        ask();
}

void ClipboardManager::ask()
{
    const xcb_atom_t property = m_connection.atom("TESSALY_SAVE");
    const auto& targets = m_handingOver->targets;
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, m_window, property, XCB_ATOM_ATOM, 32,
                        static_cast<uint32_t>(targets.size()), targets.data());
    xcb_convert_selection(m_connection.get(), m_window, m_manager.selection(), m_connection.atom("SAVE_TARGETS"),
                          property, m_handingOver->time);
    m_handingOver->isAsked = true;
    m_handingOver->deadline = Clock::now() + handOverTimeout;
}

void ClipboardManager::handle(const xcb_selection_notify_event_t& event)
{
    if (m_handingOver && m_handingOver->isAsked && event.selection == m_manager.selection())
        finishHandingOver();
}

/// Only done() is called more than never: the state stays, because what happens on the clipboard from now on is no
/// copy.
void ClipboardManager::finishHandingOver()
{
    if (const auto done = std::exchange(m_handingOver->done, {}))
        done();
}

std::optional<ClipboardManager::Clock::time_point> ClipboardManager::deadline() const
{
    if (m_handingOver && m_handingOver->done)
        return m_handingOver->deadline;
    return m_heldSaves.empty() ? std::nullopt : std::optional(m_heldSaves.front().deadline);
}

void ClipboardManager::expire(Clock::time_point now)
{
    // They want to end, and are told what there is.
    while (!m_heldSaves.empty() && m_heldSaves.front().deadline <= now) {
        m_manager.answer(m_heldSaves.front().request);
        m_heldSaves.erase(m_heldSaves.begin());
    }
    if (m_handingOver && m_handingOver->deadline <= now)
        finishHandingOver();
}

void ClipboardManager::shutDown()
{
    for (const HeldSave& save : std::exchange(m_heldSaves, {}))
        m_manager.refuse(save.request);
    m_manager.release();
}

} // namespace Clipboard::X11
