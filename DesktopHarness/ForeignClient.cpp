#include "ForeignClient.h"

#include "ClosedPipes.h"
#include "VirtualSession.h"
#include "Xcb.h"

#include <algorithm>
#include <sys/socket.h>

namespace Clipboard::Testing {

using Manner = ForeignClient::Answer::Manner;

namespace {

constexpr uint32_t maxWords = 100'000'000;
constexpr std::chrono::seconds patience(20); // long, because sanitizers and loaded machines are slow

} // namespace

ForeignClient::ForeignClient(const QByteArray& display, const QByteArray& selection)
    : m_connection(xcb_connect(display.constData(), nullptr))
    , m_atoms(m_connection)
    , m_window(Xcb::createHiddenWindow(m_connection, XCB_EVENT_MASK_PROPERTY_CHANGE))
    , m_selection(Xcb::atom(m_connection, selection))
    , m_property(Xcb::atom(m_connection, "RECEIVED"))
    , m_thread([this] { run(); })
{
}

ForeignClient::ForeignClient(const VirtualSession& session, const QByteArray& selection)
    : ForeignClient(session.display().toLatin1(), selection)
{
}

ForeignClient::~ForeignClient()
{
    hangUp();
    m_thread.join();
    xcb_disconnect(m_connection);
}

// ── What it copies

void ForeignClient::offer(const QHash<QByteArray, Answer>& answers)
{
    const std::scoped_lock lock(m_mutex);
    m_answers = answers;
}

void ForeignClient::take()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_asked.clear();
        m_answered.clear();
    }
    xcb_set_selection_owner(m_connection, m_window, m_selection, XCB_CURRENT_TIME);
    Xcb::synchronize(m_connection);
}

void ForeignClient::copy(const QHash<QByteArray, Answer>& answers)
{
    offer(answers);
    take();
}

void ForeignClient::copyAndHang()
{
    copy({{"TARGETS", {.manner = Manner::Mute}}, {"UTF8_STRING", {.manner = Manner::Mute}}});
}

void ForeignClient::clear()
{
    xcb_set_selection_owner(m_connection, XCB_WINDOW_NONE, m_selection, XCB_CURRENT_TIME);
    Xcb::synchronize(m_connection);
}

void ForeignClient::die()
{
    hangUp();
}

/// The thread's wait for events comes to an end with it.
void ForeignClient::hangUp()
{
    xcb_flush(m_connection);
    shutdown(xcb_get_file_descriptor(m_connection), SHUT_RDWR);
}

std::optional<QByteArrayList> ForeignClient::save()
{
    ask(m_atoms.atom("CLIPBOARD_MANAGER"), m_atoms.atom("SAVE_TARGETS"), XCB_CURRENT_TIME);
    if (waitFor(Arrival::Kind::answer) != m_property)
        return {};
    return m_atoms.namesIn(receive(m_property));
}

void ForeignClient::answerLate()
{
    const QByteArray target = m_atoms.name(m_late.target);
    put(m_late.requestor, m_late.property, m_late.target, 8, m_answers.value(target).bytes);
    notify(m_late, m_late.property);
    Xcb::synchronize(m_connection);
}

void ForeignClient::refuseLate()
{
    notify(m_late, XCB_ATOM_NONE);
    Xcb::synchronize(m_connection);
}

bool ForeignClient::ownsSelection() const
{
    return Xcb::selectionOwner(m_connection, m_selection) == m_window;
}

QByteArrayList ForeignClient::asked() const
{
    const std::scoped_lock lock(m_mutex);
    return m_asked;
}

QByteArrayList ForeignClient::contentAsked() const
{
    QByteArrayList targets = asked();
    targets.removeAll("TARGETS");
    return targets;
}

QByteArrayList ForeignClient::answered() const
{
    const std::scoped_lock lock(m_mutex);
    return m_answered;
}

// ── What it answers, on its thread

void ForeignClient::run()
{
    surviveClosedPipes(); // it may die while it hands out a piece
    while (const Xcb::Pointer<xcb_generic_event_t> event{xcb_wait_for_event(m_connection)})
        handle(*event);
    const std::scoped_lock lock(m_mutex);
    m_arrivals.push_back({Arrival::Kind::answer, XCB_ATOM_NONE}); // nobody waits for a dead one
    m_arrivals.push_back({Arrival::Kind::piece, XCB_ATOM_NONE});
    m_arrived.notify_all();
}

void ForeignClient::handle(const xcb_generic_event_t& event)
{
    const uint8_t type = event.response_type & 0x7fU;
    if (type == XCB_SELECTION_REQUEST) {
        answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    } else if (type == XCB_SELECTION_NOTIFY) {
        const auto& notice = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        const std::scoped_lock lock(m_mutex);
        m_arrivals.push_back({Arrival::Kind::answer, notice.property});
        m_arrived.notify_all();
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.state == XCB_PROPERTY_DELETE) {
            sendPieces(change);
        } else if (change.window == m_window && change.atom == m_property) {
            const std::scoped_lock lock(m_mutex);
            m_arrivals.push_back({Arrival::Kind::piece, change.atom});
            m_arrived.notify_all();
        }
    }
    xcb_flush(m_connection);
}

void ForeignClient::answer(const xcb_selection_request_event_t& request)
{
    const QByteArray target = m_atoms.name(request.target);
    QHash<QByteArray, Answer> answers;
    {
        const std::scoped_lock lock(m_mutex);
        m_asked.append(target);
        answers = m_answers;
        if (answers.value(target).manner == Manner::Late)
            m_late = request;
    }
    if (target == "TARGETS" && !answers.contains(target)) {
        std::vector<xcb_atom_t> atoms;
        for (auto name = answers.keyBegin(); name != answers.keyEnd(); ++name)
            atoms.push_back(m_atoms.atom(*name));
        put(request.requestor, request.property, XCB_ATOM_ATOM, 32, AtomNames::bytesOf(atoms));
        return notify(request, request.property);
    }
    Answer answer = answers.value(target, {.manner = Manner::Refuse});
    if (answer.manner == Manner::Mute || answer.manner == Manner::Late)
        return;
    if (answer.manner == Manner::Refuse)
        return notify(request, XCB_ATOM_NONE);
    if (answer.type.isEmpty())
        answer.type = target;
    if (answer.manner == Manner::AtOnce)
        put(request.requestor, request.property, m_atoms.atom(answer.type), answer.format, answer.bytes);
    else
        announce(request, answer);
    notify(request, request.property);
}

void ForeignClient::announce(const xcb_selection_request_event_t& request, const Answer& answer)
{
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection, request.requestor, XCB_CW_EVENT_MASK, &mask);
    const auto size = answer.announcedBytes != 0 ? answer.announcedBytes : static_cast<uint32_t>(answer.bytes.size());
    put(request.requestor, request.property, m_atoms.atom("INCR"), 32,
        {reinterpret_cast<const char*>(&size), sizeof size});
    m_sending.append({request.requestor, request.property, answer});
}

void ForeignClient::sendPieces(const xcb_property_notify_event_t& taken)
{
    for (Sending& sending : m_sending) {
        if (taken.window == sending.requestor && taken.atom == sending.property)
            sendPiece(sending);
    }
    m_sending.removeIf([](const Sending& sending) { return sending.isFinished; });
}

void ForeignClient::sendPiece(Sending& sending)
{
    const Answer& answer = sending.answer;
    if (sending.pieces == 2 && answer.manner == Manner::StallInTheMiddle)
        return;
    if (sending.pieces == 2 && answer.manner == Manner::DieInTheMiddle)
        return hangUp();
    if (answer.manner == Manner::EndlessPieces)
        sending.sent = 0;
    const QByteArray piece = answer.bytes.mid(sending.sent, answer.pieceBytes);
    const bool isOdd = sending.pieces == 2 && answer.manner == Manner::ChangeInTheMiddle;
    put(sending.requestor, sending.property, m_atoms.atom(isOdd ? "INTEGER" : answer.type), isOdd ? 32 : answer.format,
        piece);
    if (sending.pieces == 2 && answer.manner == Manner::FallInTheMiddle)
        xcb_destroy_window(m_connection, m_window);
    sending.sent += piece.size();
    sending.isFinished = piece.isEmpty();
    ++sending.pieces;
}

void ForeignClient::put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format, const QByteArray& bytes)
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, property, type, static_cast<uint8_t>(format),
                        static_cast<uint32_t>(bytes.size() / (format / 8)), bytes.constData());
}

void ForeignClient::notify(const xcb_selection_request_event_t& request, xcb_atom_t property)
{
    union {
        xcb_selection_notify_event_t event;
        char wire[32];
    } message = {};
    message.event.response_type = XCB_SELECTION_NOTIFY;
    message.event.time = request.time;
    message.event.requestor = request.requestor;
    message.event.selection = request.selection;
    message.event.target = request.target;
    message.event.property = property;
    const QByteArray target = m_atoms.name(request.target);
    xcb_send_event(m_connection, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, message.wire);
    const std::scoped_lock lock(m_mutex);
    if (property != XCB_ATOM_NONE)
        m_answered.append(target);
}

// ── What it pastes

std::optional<ForeignClient::Received> ForeignClient::convert(const QByteArray& target, xcb_timestamp_t time)
{
    begin(target, time);
    if (!isAccepted())
        return {};
    while (m_received.isIncremental) {
        const auto piece = nextPiece();
        if (!piece)
            return {};
        if (piece->isEmpty())
            break;
        m_received.bytes += *piece;
    }
    return m_received;
}

void ForeignClient::begin(const QByteArray& target, xcb_timestamp_t time)
{
    m_received = {};
    xcb_delete_property(m_connection, m_window, m_property);
    ask(m_selection, m_atoms.atom(target), time);
}

void ForeignClient::ask(xcb_atom_t selection, xcb_atom_t target, xcb_timestamp_t time)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_arrivals.clear();
    }
    xcb_convert_selection(m_connection, m_window, selection, target, m_property, time);
    xcb_flush(m_connection);
}

bool ForeignClient::isAccepted()
{
    if (waitFor(Arrival::Kind::answer) != m_property)
        return false;
    const QByteArray bytes = receive(m_property);
    m_received.isIncremental = m_received.type == "INCR";
    if (!m_received.isIncremental)
        m_received.bytes = bytes;
    return true;
}

std::optional<QByteArray> ForeignClient::nextPiece()
{
    while (waitFor(Arrival::Kind::piece) != XCB_ATOM_NONE) {
        const Received before = m_received;
        const QByteArray piece = receive(m_property);
        if (!m_received.type.isEmpty())
            return piece;
        m_received = before; // of the announcement, which is already taken
    }
    return {};
}

QByteArrayList ForeignClient::targets()
{
    const auto list = convert("TARGETS");
    if (!list || list->type != "ATOM" || list->format != 32)
        return {};
    return m_atoms.namesIn(list->bytes);
}

std::vector<std::optional<QByteArray>> ForeignClient::convertMultiple(const QByteArrayList& targets)
{
    std::vector<xcb_atom_t> pairs;
    for (const QByteArray& target : targets) {
        pairs.push_back(m_atoms.atom(target));
        pairs.push_back(m_atoms.atom("RECEIVED_" + QByteArray::number(pairs.size())));
    }
    put(m_window, m_property, m_atoms.atom("ATOM_PAIR"), 32, AtomNames::bytesOf(pairs));
    ask(m_selection, m_atoms.atom("MULTIPLE"), XCB_CURRENT_TIME);
    if (waitFor(Arrival::Kind::answer) != m_property)
        return {};
    const std::vector<xcb_atom_t> answered = AtomNames::atomsIn(receive(m_property));
    std::vector<std::optional<QByteArray>> received(answered.size() / 2);
    for (size_t i = 0; i < received.size(); ++i) {
        if (answered[2 * i] != XCB_ATOM_NONE)
            received[i] = receive(pairs[2 * i + 1]);
    }
    return received;
}

xcb_atom_t ForeignClient::waitFor(Arrival::Kind kind)
{
    std::unique_lock lock(m_mutex);
    auto found = m_arrivals.end();
    const bool came = m_arrived.wait_for(lock, patience, [&] {
        found = std::ranges::find(m_arrivals, kind, &Arrival::kind);
        return found != m_arrivals.end();
    });
    if (!came)
        return XCB_ATOM_NONE;
    const xcb_atom_t property = found->property;
    m_arrivals.erase(found);
    return property;
}

QByteArray ForeignClient::receive(xcb_atom_t property)
{
    const auto cookie = xcb_get_property(m_connection, 1, m_window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, maxWords);
    const Xcb::Pointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection, cookie, nullptr));
    m_received.type = reply && reply->type != XCB_ATOM_NONE ? m_atoms.name(reply->type) : QByteArray();
    m_received.format = reply ? reply->format : 0;
    if (!reply)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), xcb_get_property_value_length(reply.get())};
}

} // namespace Clipboard::Testing
