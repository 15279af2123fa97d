#include "SelectionOwner.h"

#include <algorithm>

namespace Clipboard::X11 {

std::vector<xcb_atom_t> targetsOf(XcbConnection& connection, const SelectionForms& forms)
{
    std::vector<xcb_atom_t> atoms;
    for (const SelectionForm& form : forms) {
        const xcb_atom_t atom = connection.atom(form.target);
        if (std::ranges::find(atoms, atom) == atoms.end())
            atoms.push_back(atom);
    }
    return atoms;
}

SelectionOwner::SelectionOwner(XcbConnection& connection, OutgoingTransfers& transfers, xcb_window_t window,
                               const QByteArray& selection)
    : m_connection(connection)
    , m_transfers(transfers)
    , m_window(window)
    , m_selection(connection.atom(selection))
{
}

bool SelectionOwner::own(const SelectionForms& forms, xcb_timestamp_t time)
{
    xcb_set_selection_owner(m_connection.get(), m_window, m_selection, time);
    if (m_connection.selectionOwner(m_selection) != m_window)
        return false;
    m_forms = forms;
    m_converted.clear();
    m_time = time;
    m_isOwned = true;
    return true;
}

void SelectionOwner::release()
{
    if (m_isOwned)
        xcb_set_selection_owner(m_connection.get(), XCB_WINDOW_NONE, m_selection, m_time);
    lose();
}

void SelectionOwner::lose()
{
    m_isOwned = false;
    m_forms.clear();
    m_converted.clear();
}

void SelectionOwner::answer(const xcb_selection_request_event_t& request)
{
    // Requests of clients from before the ICCCM name no property; the target stands in for it (2.2).
    const xcb_atom_t property = request.property == XCB_ATOM_NONE ? request.target : request.property;
    const bool isOurs = m_connection.isOurs(request.requestor);
    if (!m_isOwned || isOurs || !isInTime(request.time)) {
        refuse(request);
        return;
    }
    const bool isMultiple = request.target == m_connection.atom("MULTIPLE");
    const bool isDone = isMultiple ? convertMultiple(request) : convert(request.requestor, request.target, property);
    notify(request, isDone ? property : static_cast<xcb_atom_t>(XCB_ATOM_NONE));
}

void SelectionOwner::refuse(const xcb_selection_request_event_t& request)
{
    notify(request, XCB_ATOM_NONE);
}

/// A request from before we had the selection was meant for its owner of that time (ICCCM 2.2). Server times wrap
/// around.
bool SelectionOwner::isInTime(xcb_timestamp_t time) const
{
    return time == XCB_CURRENT_TIME || static_cast<int32_t>(time - m_time) >= 0;
}

bool SelectionOwner::convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    if (target == m_connection.atom("TARGETS"))
        return m_transfers.send({requestor, property, XCB_ATOM_ATOM, 32, std::make_shared<QByteArray>(targetList())});
    if (target == m_connection.atom("TIMESTAMP"))
        return m_transfers.send(
            {requestor, property, XCB_ATOM_INTEGER, 32, std::make_shared<QByteArray>(bytesOf(std::vector{m_time}))});
    const auto form = std::ranges::find_if(
        m_forms, [&](const SelectionForm& candidate) { return m_connection.atom(candidate.target) == target; });
    if (form == m_forms.end())
        return false;
    const auto bytes = convert(*form);
    return bytes && m_transfers.send({requestor, property, m_connection.atom(form->type), form->format, bytes});
}

std::shared_ptr<const QByteArray> SelectionOwner::convert(const SelectionForm& form)
{
    if (auto converted = m_converted.value(form.target).lock())
        return converted;
    const auto bytes = form.bytes();
    if (!bytes)
        return nullptr;
    auto converted = std::make_shared<const QByteArray>(*bytes);
    m_converted.insert(form.target, converted);
    return converted;
}

/// The property lists pairs of target and property. What cannot be converted is put out in the list (ICCCM 2.6.2: the
/// target; some clients look at the property), the rest stands.
bool SelectionOwner::convertMultiple(const xcb_selection_request_event_t& request)
{
    if (request.property == XCB_ATOM_NONE)
        return false;
    const auto pairType = m_connection.atom("ATOM_PAIR");
    const auto reply =
        m_connection.property(request.requestor, request.property, XCB_GET_PROPERTY_TYPE_ANY, 2 * maxMultiplePairs);
    if (!reply || reply->format != 32 || reply->bytes_after > 0 || reply->value_len % 2 != 0)
        return false;
    const auto* first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    std::vector<xcb_atom_t> pairs(first, first + reply->value_len);
    const xcb_atom_t multiple = m_connection.atom("MULTIPLE");
    for (size_t i = 0; i < pairs.size(); i += 2) {
        const bool isPossible = pairs[i + 1] != XCB_ATOM_NONE && pairs[i] != multiple;
        if (!isPossible || !convert(request.requestor, pairs[i], pairs[i + 1]))
            pairs[i] = pairs[i + 1] = XCB_ATOM_NONE;
    }
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, pairType, 32,
                        static_cast<uint32_t>(pairs.size()), pairs.data());
    return true;
}

QByteArray SelectionOwner::targetList()
{
    std::vector<xcb_atom_t> atoms;
    for (const char* name : {"TARGETS", "TIMESTAMP", "MULTIPLE"})
        atoms.push_back(m_connection.atom(name));
    const auto forms = targetsOf(m_connection, m_forms);
    atoms.insert(atoms.end(), forms.begin(), forms.end());
    return bytesOf(atoms);
}

void SelectionOwner::notify(const xcb_selection_request_event_t& request, xcb_atom_t property)
{
    // The server reads a whole event of 32 bytes; this kind is shorter.
    union {
        xcb_selection_notify_event_t event;
        char wire[32];
    } message = {};
    auto& event = message.event;
    event.response_type = XCB_SELECTION_NOTIFY;
    event.time = request.time;
    event.requestor = request.requestor;
    event.selection = request.selection;
    event.target = request.target;
    event.property = property;
    xcb_send_event(m_connection.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, message.wire);
}

} // namespace Clipboard::X11
