#include "SelectionDispatcher.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <utility>

namespace Clipboard::X11 {

namespace {

// After so many events the engine looks at its other duties, however fast more come in.
constexpr int maxEventsInARow = 256;
// Programs that wait to end until their content is safe. One at a time has the clipboard.
constexpr size_t maxHeldSaves = 16;

/// Those that every start needs, in one round trip.
std::unique_ptr<XcbConnection> withAtoms(std::unique_ptr<XcbConnection> connection)
{
    connection->preloadAtoms({"TESSALY_TIME", "CLIPBOARD", "PRIMARY", "CLIPBOARD_MANAGER", "SAVE_TARGETS", "TARGETS",
                              "MULTIPLE", "TIMESTAMP", "INCR", "UTF8_STRING", "MANAGER", "NULL", "ATOM_PAIR"});
    return connection;
}

template <typename T>
const T& as(const xcb_generic_event_t& event)
{
    return reinterpret_cast<const T&>(event);
}

} // namespace

SelectionDispatcher::SelectionDispatcher(std::unique_ptr<XcbConnection> connection,
                                         const SelectionReader::Options& options, PublishFunction publish)
    : m_connection(withAtoms(std::move(connection)))
    , m_publish(std::move(publish))
    , m_window(m_connection->createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE))
    , m_timeProperty(m_connection->atom("TESSALY_TIME"))
    , m_transfers(*m_connection)
    , m_clipboard(*m_connection, m_transfers, m_window, "CLIPBOARD")
    , m_primary(*m_connection, m_transfers, m_window, "PRIMARY")
    , m_manager(*m_connection, m_transfers, m_window, "CLIPBOARD_MANAGER")
    , m_reader(
          *m_connection, m_window, options, [this](const SelectionContent& content) { this->publish(content); },
          [this] { answerHeldSaves(); })
{
    xcb_connection_t* xcb = m_connection->get();
    const XcbPointer<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(xcb, xcb_xfixes_query_version(xcb, 1, 0), nullptr));
    const auto* extension = xcb_get_extension_data(xcb, &xcb_xfixes_id);
    m_ownerChangedEvent = static_cast<uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    xcb_xfixes_select_selection_input(xcb, m_window, m_clipboard.selection(),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    readInitialContent();
    becomeManager();
    m_connection->flush();
}

/// What is there already is no change, but its owner may end like any other.
void SelectionDispatcher::readInitialContent()
{
    if (currentOwner(m_clipboard.selection()) != XCB_WINDOW_NONE)
        m_reader.start(m_clipboard.selection(), XCB_CURRENT_TIME);
}

/// Programs that end ask the owner of this selection to keep their content. One that is there already is left in place.
void SelectionDispatcher::becomeManager()
{
    if (currentOwner(m_manager.selection()) != XCB_WINDOW_NONE)
        return;
    withServerTime([this](xcb_timestamp_t time) {
        if (!m_manager.own({verbatimForm("SAVE_TARGETS", "NULL", 32, {})}, time))
            return;
        xcb_client_message_event_t announcement = {};
        announcement.response_type = XCB_CLIENT_MESSAGE;
        announcement.format = 32;
        announcement.window = m_connection->root();
        announcement.type = m_connection->atom("MANAGER");
        announcement.data.data32[0] = time;
        announcement.data.data32[1] = m_manager.selection();
        announcement.data.data32[2] = m_window;
        xcb_send_event(m_connection->get(), 0, m_connection->root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&announcement));
    });
}

void SelectionDispatcher::own(const SelectionForms& forms, quint64 write)
{
    withServerTime([this, forms, write](xcb_timestamp_t time) {
        // What others do from here on comes after this write, also when one of them was faster and keeps the clipboard.
        m_writes = write;
        m_isInitial = false;
        if (m_clipboard.own(forms, time))
            m_reader.cancel();
        answerHeldSaves();
    });
}

void SelectionDispatcher::afterWrites(bool primaryToo, const std::function<void()>& done)
{
    withServerTime([this, primaryToo, done](xcb_timestamp_t time) {
        // Should another program take the primary selection in between, its content is what the user sees marked.
        if (primaryToo && m_clipboard.isOwned())
            std::ignore = m_primary.own(m_clipboard.forms(), time);
        m_connection->flush();
        done();
    });
}

/// The time of the server, without a race: it stamps a change of one of our own properties (ICCCM 2.1).
void SelectionDispatcher::withServerTime(TimedAction action)
{
    m_waitingForTime.push_back(std::move(action));
    xcb_change_property(m_connection->get(), XCB_PROP_MODE_APPEND, m_window, m_timeProperty, XCB_ATOM_INTEGER, 32, 0,
                        nullptr);
}

void SelectionDispatcher::shutDown()
{
    for (const auto& request : std::exchange(m_heldSaves, {}))
        m_manager.refuse(request);
    m_manager.release();
    m_connection->synchronize();
}

bool SelectionDispatcher::handleEvents()
{
    for (int i = 0; i < maxEventsInARow; ++i) {
        XcbPointer<xcb_generic_event_t> event(xcb_poll_for_event(m_connection->get()));
        if (!event) {
            m_connection->flush();
            // Sending may have read what arrived meanwhile.
            event.reset(xcb_poll_for_queued_event(m_connection->get()));
            if (!event)
                return false;
        }
        dispatch(*event);
    }
    m_connection->flush();
    return true;
}

void SelectionDispatcher::dispatch(const xcb_generic_event_t& event)
{
    const uint8_t type = event.response_type & 0x7fU;
    if (type == m_ownerChangedEvent) {
        ownerChanged(event);
        return;
    }
    switch (type) {
    case 0: // An error. The only ones that mean something are those about a requestor's window that is gone.
        m_transfers.windowGone(as<xcb_generic_error_t>(event).resource_id);
        break;
    case XCB_DESTROY_NOTIFY:
        m_transfers.windowGone(as<xcb_destroy_notify_event_t>(event).window);
        break;
    case XCB_PROPERTY_NOTIFY:
        propertyChanged(as<xcb_property_notify_event_t>(event));
        break;
    case XCB_SELECTION_NOTIFY:
        m_reader.handle(as<xcb_selection_notify_event_t>(event));
        break;
    case XCB_SELECTION_REQUEST:
        requested(as<xcb_selection_request_event_t>(event));
        break;
    case XCB_SELECTION_CLEAR:
        cleared(as<xcb_selection_clear_event_t>(event));
        break;
    default:
        break;
    }
}

void SelectionDispatcher::ownerChanged(const xcb_generic_event_t& event)
{
    const auto& change = as<xcb_xfixes_selection_notify_event_t>(event);
    if (change.selection != m_clipboard.selection())
        return;
    m_isInitial = false;
    if (change.owner == m_window) {
        m_reader.cancel();
    } else if (change.owner != XCB_WINDOW_NONE) {
        m_reader.start(change.selection, change.selection_timestamp);
    } else {
        ownerGone(change.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER, change.selection_timestamp);
    }
    answerHeldSaves();
}

/// A program that gave the clipboard up wanted it empty. One that ended did not: what was read of its content takes its
/// place, as of the same time, so that no copy made meanwhile is pushed aside.
void SelectionDispatcher::ownerGone(bool isDeliberate, xcb_timestamp_t ownedSince)
{
    if (!isDeliberate && m_reader.hasContent() && m_clipboard.own(m_reader.keptForms(), ownedSince))
        return;
    m_reader.cancel();
    publish({});
}

void SelectionDispatcher::propertyChanged(const xcb_property_notify_event_t& event)
{
    if (event.window != m_window) {
        m_transfers.handle(event);
    } else if (event.atom != m_timeProperty) {
        m_reader.handle(event);
    } else if (!m_waitingForTime.empty()) {
        const TimedAction action = std::move(m_waitingForTime.front());
        m_waitingForTime.pop_front();
        action(event.time);
    }
}

void SelectionDispatcher::requested(const xcb_selection_request_event_t& request)
{
    SelectionOwner* owner = ownerOf(request.selection);
    if (owner == nullptr)
        return;
    const bool isSave = owner == &m_manager && request.target == m_connection->atom("SAVE_TARGETS");
    if (!isSave) {
        owner->answer(request);
    } else if (m_heldSaves.size() < maxHeldSaves) {
        m_heldSaves.push_back(request);
        answerHeldSaves();
    } else {
        owner->refuse(request);
    }
}

/// Once the content is safe, or is known never to be, whoever waits to end can do so.
void SelectionDispatcher::answerHeldSaves()
{
    if (m_reader.isBusy())
        return;
    const bool isSafe = m_reader.hasContent() || m_clipboard.isOwned();
    for (const auto& request : std::exchange(m_heldSaves, {})) {
        if (isSafe)
            m_manager.answer(request);
        else
            m_manager.refuse(request);
    }
}

void SelectionDispatcher::cleared(const xcb_selection_clear_event_t& event)
{
    SelectionOwner* owner = ownerOf(event.selection);
    // It may tell of a loss before we took the selection again.
    if (owner != nullptr && currentOwner(event.selection) != m_window)
        owner->lose();
}

SelectionOwner* SelectionDispatcher::ownerOf(xcb_atom_t selection)
{
    for (SelectionOwner* owner : {&m_clipboard, &m_primary, &m_manager}) {
        if (owner->selection() == selection)
            return owner;
    }
    return nullptr;
}

xcb_window_t SelectionDispatcher::currentOwner(xcb_atom_t selection) const
{
    const auto cookie = xcb_get_selection_owner(m_connection->get(), selection);
    const XcbPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_connection->get(), cookie, nullptr));
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

void SelectionDispatcher::publish(const SelectionContent& content)
{
    m_publish({content, m_writes, m_isInitial});
}

std::optional<SelectionDispatcher::Clock::time_point> SelectionDispatcher::deadline() const
{
    const auto reading = m_reader.deadline();
    const auto writing = m_transfers.deadline();
    return reading && writing ? std::min(*reading, *writing) : (reading ? reading : writing);
}

void SelectionDispatcher::expire(Clock::time_point now)
{
    m_reader.expire(now);
    m_transfers.expire(now);
    m_connection->flush();
}

} // namespace Clipboard::X11
