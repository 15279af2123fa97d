#include "ForeignRequestor.h"

#include <chrono>
#include <thread>

namespace Clipboard::Testing {

namespace {

constexpr uint32_t maxWords = 100'000'000;

QByteArray valueOf(const xcb_get_property_reply_t& reply)
{
    return {static_cast<const char*>(xcb_get_property_value(&reply)), xcb_get_property_value_length(&reply)};
}

} // namespace

ForeignRequestor::ForeignRequestor(const QByteArray& display, const QByteArray& selection)
    : m_connection(X11::XcbConnection::open(display))
    , m_window(m_connection->createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE))
    , m_selection(m_connection->atom(selection))
    , m_property(m_connection->atom("RECEIVED"))
{
}

std::optional<ForeignRequestor::Received> ForeignRequestor::convert(const QByteArray& target, xcb_timestamp_t time)
{
    begin(target, time);
    if (!isAccepted())
        return {};
    if (m_received.isIncremental) {
        for (;;) {
            const auto piece = nextPiece();
            if (!piece)
                return {};
            if (piece->isEmpty())
                break;
            m_received.bytes += *piece;
        }
    }
    return m_received;
}

void ForeignRequestor::begin(const QByteArray& target, xcb_timestamp_t time)
{
    m_received = {};
    xcb_delete_property(m_connection->get(), m_window, m_property);
    xcb_convert_selection(m_connection->get(), m_window, m_selection, m_connection->atom(target), m_property, time);
    m_connection->flush();
}

bool ForeignRequestor::isAccepted()
{
    const auto event = waitFor(XCB_SELECTION_NOTIFY);
    if (!event || reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property != m_property)
        return false;
    const auto reply = takeProperty(m_property);
    m_received.type = m_connection->atomNames({&reply->type, 1}).front();
    m_received.format = reply->format;
    m_received.isIncremental = m_received.type == "INCR";
    if (!m_received.isIncremental)
        m_received.bytes = valueOf(*reply);
    return true;
}

std::optional<QByteArray> ForeignRequestor::nextPiece()
{
    while (const auto event = waitFor(XCB_PROPERTY_NOTIFY)) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
        if (change.atom != m_property || change.state != XCB_PROPERTY_NEW_VALUE)
            continue;
        const auto reply = takeProperty(m_property);
        if (reply->type == XCB_ATOM_NONE) // the announcement, already taken
            continue;
        m_received.type = m_connection->atomNames({&reply->type, 1}).front();
        m_received.format = reply->format;
        return valueOf(*reply);
    }
    return {};
}

QByteArrayList ForeignRequestor::targets()
{
    const auto list = convert("TARGETS");
    if (!list || list->type != "ATOM" || list->format != 32)
        return {};
    std::vector<xcb_atom_t> atoms(static_cast<size_t>(list->bytes.size()) / sizeof(xcb_atom_t));
    std::copy_n(list->bytes.constData(), list->bytes.size(), reinterpret_cast<char*>(atoms.data()));
    QByteArrayList names;
    for (const QByteArray& name : m_connection->atomNames(atoms))
        names.append(name);
    return names;
}

std::vector<std::optional<QByteArray>> ForeignRequestor::convertMultiple(const QByteArrayList& targets)
{
    std::vector<xcb_atom_t> pairs;
    for (const QByteArray& target : targets) {
        pairs.push_back(m_connection->atom(target));
        pairs.push_back(m_connection->atom("RECEIVED_" + QByteArray::number(pairs.size())));
    }
    xcb_change_property(m_connection->get(), XCB_PROP_MODE_REPLACE, m_window, m_property,
                        m_connection->atom("ATOM_PAIR"), 32, static_cast<uint32_t>(pairs.size()), pairs.data());
    xcb_convert_selection(m_connection->get(), m_window, m_selection, m_connection->atom("MULTIPLE"), m_property,
                          XCB_CURRENT_TIME);
    m_connection->flush();
    const auto event = waitFor(XCB_SELECTION_NOTIFY);
    if (!event || reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property != m_property)
        return {};
    const auto answered = m_connection->words(m_window, m_property, m_connection->atom("ATOM_PAIR"), maxWords);
    std::vector<std::optional<QByteArray>> received(answered.size() / 2);
    for (size_t i = 0; i < received.size(); ++i) {
        if (answered[2 * i] != XCB_ATOM_NONE)
            received[i] = valueOf(*takeProperty(pairs[2 * i + 1]));
    }
    return received;
}

X11::XcbPointer<xcb_generic_event_t> ForeignRequestor::waitFor(uint8_t type)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < end) {
        X11::XcbPointer<xcb_generic_event_t> event(xcb_poll_for_event(m_connection->get()));
        if (event && (event->response_type & 0x7fU) == type)
            return event;
        if (!event)
            std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
    return nullptr;
}

X11::XcbPointer<xcb_get_property_reply_t> ForeignRequestor::takeProperty(xcb_atom_t property)
{
    const auto cookie =
        xcb_get_property(m_connection->get(), 1, m_window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, maxWords);
    return X11::XcbPointer<xcb_get_property_reply_t>(xcb_get_property_reply(m_connection->get(), cookie, nullptr));
}

} // namespace Clipboard::Testing
