#pragma once

#include "X11/XcbConnection.h"

#include <QByteArray>
#include <QByteArrayList>

#include <optional>

namespace Clipboard::Testing {

/// Another program that asks for a selection, in the test's own thread and step by step.
class ForeignRequestor final
{
public:
    struct Received
    {
        QByteArray type;
        int format = 0;
        QByteArray bytes;
        bool isIncremental = false;
    };

    explicit ForeignRequestor(const QByteArray& display, const QByteArray& selection = "CLIPBOARD");

    /// The whole conversion; nothing when it is refused or does not come to an end.
    [[nodiscard]] std::optional<Received> convert(const QByteArray& target, xcb_timestamp_t time = XCB_CURRENT_TIME);
    /// The same in steps, so that other things can happen in between.
    void begin(const QByteArray& target, xcb_timestamp_t time = XCB_CURRENT_TIME);
    [[nodiscard]] bool isAccepted(); // waits for the answer
    /// Waits for the next piece; empty at the end, nothing when none comes.
    [[nodiscard]] std::optional<QByteArray> nextPiece();

    /// The names that TARGETS gives.
    [[nodiscard]] QByteArrayList targets();
    /// Several targets in one MULTIPLE request: for each what came, or nothing when it was refused.
    [[nodiscard]] std::vector<std::optional<QByteArray>> convertMultiple(const QByteArrayList& targets);

private:
    /// Waits for an event of that type; null when none comes.
    [[nodiscard]] X11::XcbPointer<xcb_generic_event_t> waitFor(uint8_t type);
    [[nodiscard]] X11::XcbPointer<xcb_get_property_reply_t> takeProperty(xcb_atom_t property);

    std::unique_ptr<X11::XcbConnection> m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_selection;
    xcb_atom_t m_property;
    Received m_received;
};

} // namespace Clipboard::Testing
