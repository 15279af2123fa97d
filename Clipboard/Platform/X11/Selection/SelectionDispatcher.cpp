#include "SelectionDispatcher.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <utility>

namespace Clipboard::X11 {

using namespace Qt::StringLiterals;

namespace {

// After so many events the engine looks at its other duties, however fast more come in.
constexpr int maxEventsInARow = 256;

/// True when none of the types stands for content other than text.
bool areTextual(const QSet<QString>& types)
{
    constexpr std::array protocol{"TARGETS"_L1, "MULTIPLE"_L1, "TIMESTAMP"_L1, "SAVE_TARGETS"_L1};
    constexpr std::array texts{"UTF8_STRING"_L1, "STRING"_L1, "TEXT"_L1, "COMPOUND_TEXT"_L1};
    return std::ranges::all_of(types, [&](const QString& type) {
        return type.startsWith("text/plain"_L1) || std::ranges::find(protocol, type) != protocol.end() ||
               std::ranges::find(texts, type) != texts.end();
    });
}

/// Those that every start needs, in one round trip.
std::unique_ptr<XcbConnection> withAtoms(std::unique_ptr<XcbConnection> connection)
{
    connection->preloadAtoms({"TESSALY_TIME", "CLIPBOARD", "PRIMARY", "CLIPBOARD_MANAGER", "SAVE_TARGETS", "TARGETS",
                              "MULTIPLE", "TIMESTAMP", "INCR", "UTF8_STRING", "MANAGER", "ATOM_PAIR"});
    return connection;
}

template <typename T>
const T& as(const xcb_generic_event_t& event)
{
    return reinterpret_cast<const T&>(event);
}

} // namespace

SelectionDispatcher::SelectionDispatcher(std::unique_ptr<XcbConnection> connection, const Options& options,
                                         PublishFunction publish, const std::optional<Remains>& remains)
    : m_connection(withAtoms(std::move(connection)))
    , m_publish(std::move(publish))
    , m_window(m_connection->createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY))
    , m_timeProperty(m_connection->atom("TESSALY_TIME"))
    , m_transfers(*m_connection, options.writeTimeout)
    , m_clipboard(*m_connection, m_transfers, m_window, "CLIPBOARD")
    , m_primary(*m_connection, m_transfers, m_window, "PRIMARY")
    , m_manager(*m_connection, m_transfers, m_window, options.saveHold, [this] { return keptTargets(); })
    , m_reader(
          *m_connection, options.reading, [this](const SelectionContent& content) { this->publish(content); },
          [this] { readingSettled(); })
{
    watchOwners();
    if (remains)
        resume(*remains);
    else
        readContentThere();
    withServerTime([this](xcb_timestamp_t time) { m_manager.become(time); });
    m_connection->flush();
}

void SelectionDispatcher::watchOwners()
{
    xcb_connection_t* xcb = m_connection->get();
    const XcbPointer<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(xcb, xcb_xfixes_query_version(xcb, 1, 0), nullptr));
    const auto* extension = xcb_get_extension_data(xcb, &xcb_xfixes_id);
    m_ownerChangedEvent = static_cast<uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    for (const xcb_atom_t selection : {m_clipboard.selection(), m_manager.selection().selection()})
        xcb_xfixes_select_selection_input(xcb, m_window, selection,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

/// What is there already is no change, but its owner may end like any other.
void SelectionDispatcher::readContentThere()
{
    if (m_connection->selectionOwner(m_clipboard.selection()) != XCB_WINDOW_NONE)
        m_reader.start(m_clipboard.selection(), XCB_CURRENT_TIME);
    else
        m_isInitial = false;
}

std::vector<pollfd> SelectionDispatcher::sources() const
{
    return {{m_connection->fileDescriptor(), POLLIN, 0}};
}

std::any SelectionDispatcher::remains() const
{
    Remains remains;
    remains.writes = m_writes;
    remains.unfinishedWrite = m_unfinishedWrite;
    remains.unfinishedNumber = m_unfinishedNumber;
    remains.isInitial = m_isInitial;
    if (m_clipboard.isOwned()) {
        remains.own = m_clipboard.forms();
        remains.ownSince = m_clipboard.time();
    } else {
        remains.known = m_reader.content();
        if (!remains.known)
            remains.known = m_known; // it was being read again
    }
    return remains;
}

void SelectionDispatcher::resume(const Remains& remains)
{
    m_writes = remains.writes;
    m_isInitial = remains.isInitial && !remains.known;
    m_known = remains.known;
    // As of its old time, so that no copy made meanwhile is pushed aside.
    if (!remains.own || !m_clipboard.own(*remains.own, remains.ownSince))
        readContentThere();
    if (remains.unfinishedWrite)
        own(*remains.unfinishedWrite, remains.unfinishedNumber);
}

void SelectionDispatcher::own(const SelectionForms& forms, quint64 write)
{
    m_unfinishedWrite = forms;
    m_unfinishedNumber = write;
    withServerTime([this](xcb_timestamp_t time) { finishWrite(time); });
}

/// Of several that wait for the time the latest one counts.
void SelectionDispatcher::finishWrite(xcb_timestamp_t time)
{
    const auto forms = std::exchange(m_unfinishedWrite, {});
    if (!forms)
        return;
    // What others do from here on comes after this write, also when one of them was faster and keeps the clipboard.
    m_writes = m_unfinishedNumber;
    m_isInitial = false;
    m_known.reset();
    m_takeOver.reset();
    if (m_clipboard.own(*forms, time)) {
        m_reader.cancel();
        m_manager.answerHeldSaves();
    }
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

void SelectionDispatcher::settle(const std::function<void()>& done)
{
    // News of every change made before our request comes before the answer to it.
    withServerTime([this, done](xcb_timestamp_t) {
        m_settling.push_back(done);
        m_reader.hurry(lastStepTimeout);
    });
}

void SelectionDispatcher::handOver(const std::function<void()>& done)
{
    withServerTime([this, done](xcb_timestamp_t time) {
        if (m_clipboard.isOwned())
            m_manager.handOver(m_clipboard.forms(), time, done);
        else
            done();
    });
}

void SelectionDispatcher::shutDown()
{
    m_manager.shutDown();
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
        tellWaiting();
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
        m_isWindowGone = m_isWindowGone || m_connection->isOurs(as<xcb_destroy_notify_event_t>(event).window);
        m_transfers.windowGone(as<xcb_destroy_notify_event_t>(event).window);
        break;
    case XCB_PROPERTY_NOTIFY:
        propertyChanged(as<xcb_property_notify_event_t>(event));
        break;
    case XCB_SELECTION_NOTIFY:
        if (as<xcb_selection_notify_event_t>(event).selection == m_manager.selection().selection())
            m_manager.handle(as<xcb_selection_notify_event_t>(event));
        else
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

void SelectionDispatcher::propertyChanged(const xcb_property_notify_event_t& event)
{
    if (!m_connection->isOurs(event.window)) {
        m_transfers.handle(event);
    } else if (event.window != m_window) {
        m_reader.handle(event);
    } else if (event.atom == m_timeProperty && !m_waitingForTime.empty()) {
        const TimedAction action = std::move(m_waitingForTime.front());
        m_waitingForTime.pop_front();
        action(event.time);
    }
}

void SelectionDispatcher::requested(const xcb_selection_request_event_t& request)
{
    SelectionOwner* owner = ownerOf(request.selection);
    if (owner == &m_manager.selection())
        m_manager.requested(request);
    else if (owner != nullptr)
        owner->answer(request);
    if (!m_reader.isBusy())
        readingSettled();
}

void SelectionDispatcher::readingSettled()
{
    const bool mayAskAgain = m_reader.wasRefused() && m_manager.isHoldingSaves() && !m_clipboard.isOwned();
    if (!mayAskAgain)
        m_manager.answerHeldSaves();
    else if (!m_nextAttempt)
        m_nextAttempt = Clock::now() + pauseAfterRefusal;
}

std::optional<QByteArray> SelectionDispatcher::keptTargets()
{
    if (m_clipboard.isOwned())
        return bytesOf(targetsOf(*m_connection, m_clipboard.forms()));
    if (m_reader.hasContent())
        return bytesOf(targetsOf(*m_connection, m_reader.keptForms()));
    return {};
}

void SelectionDispatcher::tellWaiting()
{
    if (m_settling.empty() || (m_reader.isBusy() && !m_reader.content()))
        return;
    for (const auto& done : std::exchange(m_settling, {}))
        done();
}

void SelectionDispatcher::cleared(const xcb_selection_clear_event_t& event)
{
    SelectionOwner* owner = ownerOf(event.selection);
    // It may tell of a loss before we took the selection again.
    if (owner != nullptr && m_connection->selectionOwner(event.selection) != m_window)
        owner->lose();
}

SelectionOwner* SelectionDispatcher::ownerOf(xcb_atom_t selection)
{
    for (SelectionOwner* owner : {&m_clipboard, &m_primary, &m_manager.selection()}) {
        if (owner->selection() == selection)
            return owner;
    }
    return nullptr;
}

void SelectionDispatcher::publish(const SelectionContent& content)
{
    // Whoever takes over what we leave behind copies nothing.
    if (m_manager.isHandingOver())
        return;
    // Without its windows or its connection the reader finds nothing, whatever there is.
    const bool isEmpty = content.fileURLs.isEmpty() && !content.png && !content.tiff && !content.text;
    if (isEmpty && !hasWindows())
        return;
    const bool isKnown = std::exchange(m_known, {}) == content;
    m_publish({content, m_writes, m_isInitial || isKnown, m_mayTakeBack && isEmpty && areTextual(content.types)});
}

/// Asks the server: the news of its end may still be on its way.
bool SelectionDispatcher::hasWindows() const
{
    const auto isThere = [xcb = m_connection->get()](xcb_window_t window) {
        const auto cookie = xcb_get_window_attributes(xcb, window);
        return XcbPointer<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes_reply(xcb, cookie, nullptr)) !=
               nullptr;
    };
    return isThere(m_window) && (m_reader.requestor() == XCB_WINDOW_NONE || isThere(m_reader.requestor()));
}

std::optional<SelectionDispatcher::Clock::time_point> SelectionDispatcher::deadline() const
{
    std::optional<Clock::time_point> earliest;
    const auto takeOver = m_takeOver ? std::optional(m_takeOver->at) : std::nullopt;
    for (const auto& deadline :
         {takeOver, m_reader.deadline(), m_transfers.deadline(), m_manager.deadline(), m_nextAttempt}) {
        if (deadline && (!earliest || *deadline < *earliest))
            earliest = deadline;
    }
    return earliest;
}

void SelectionDispatcher::expire(Clock::time_point now)
{
    m_reader.expire(now);
    m_transfers.expire(now);
    m_manager.expire(now);
    takeOverLater(now);
    if (m_nextAttempt && *m_nextAttempt <= now) {
        m_nextAttempt.reset();
        if (m_manager.isHoldingSaves() && m_reader.wasRefused() && !m_reader.isBusy())
            m_reader.startAgain();
    }
    tellWaiting();
    m_connection->flush();
}

} // namespace Clipboard::X11
