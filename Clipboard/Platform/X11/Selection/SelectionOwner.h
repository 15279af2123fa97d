#pragma once

#include "OutgoingTransfers.h"
#include "SelectionForms.h"

namespace Clipboard::X11 {

/// The targets of the forms, each once.
[[nodiscard]] std::vector<xcb_atom_t> targetsOf(XcbConnection& connection, const SelectionForms& forms);

/// Owns one selection for us and answers those who ask for it (ICCCM 2.2 and 2.6).
class SelectionOwner final
{
public:
    SelectionOwner(XcbConnection& connection, OutgoingTransfers& transfers, xcb_window_t window,
                   const QByteArray& selection);

    /// Takes the selection, as of `time`, which is a time of the server and never "now". False when another program has
    /// taken it later than that; it then stays with that program.
    [[nodiscard]] bool own(const SelectionForms& forms, xcb_timestamp_t time);
    /// Gives the selection up so that it has no owner; nothing happens when it is not ours.
    void release();
    /// Another program has taken it.
    void lose();

    [[nodiscard]] xcb_atom_t selection() const { return m_selection; }
    [[nodiscard]] bool isOwned() const { return m_isOwned; }
    [[nodiscard]] const SelectionForms& forms() const { return m_forms; }
    /// The time that was given to own().
    [[nodiscard]] xcb_timestamp_t time() const { return m_time; }

    void answer(const xcb_selection_request_event_t& request);
    void refuse(const xcb_selection_request_event_t& request);

private:
    [[nodiscard]] bool isInTime(xcb_timestamp_t time) const;
    bool convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    [[nodiscard]] std::shared_ptr<const QByteArray> convert(const SelectionForm& form);
    bool convertMultiple(const xcb_selection_request_event_t& request);
    [[nodiscard]] QByteArray targetList();
    void notify(const xcb_selection_request_event_t& request, xcb_atom_t property);

    XcbConnection& m_connection;
    OutgoingTransfers& m_transfers;
    xcb_window_t m_window;
    xcb_atom_t m_selection;
    SelectionForms m_forms;
    /// Conversions that are still on their way to somebody, by target: whoever asks meanwhile gets the same bytes.
    QHash<QByteArray, std::weak_ptr<const QByteArray>> m_converted;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    bool m_isOwned = false;
};

} // namespace Clipboard::X11
