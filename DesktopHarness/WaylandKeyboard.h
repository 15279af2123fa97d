#pragma once

#include "WaylandClient.h"

#include <memory>
#include <optional>

struct wl_seat;
struct xkb_context;
struct xkb_keymap;
struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;

namespace Clipboard::Testing {

/// An American keyboard of a Wayland session. It is one and the same for as long as the session: a program that reads
/// the keymap late, as those of X11 do, would otherwise take a key of one keyboard for that of the next, and where the
/// last keyboard goes, programs lose the focus.
class WaylandKeyboard
{
public:
    explicit WaylandKeyboard(const VirtualSession& session);
    ~WaylandKeyboard();
    Q_DISABLE_COPY_MOVE(WaylandKeyboard)

    /// False when the compositor takes no keyboard.
    [[nodiscard]] bool isPluggedIn() const { return m_keyboard != nullptr; }
    /// Presses and releases a key, "super+shift+v" or by its name in X11. It ends the
    /// program when the keyboard has no such key.
    void press(const QString& chord);
    void type(const QString& text);

private:
    struct Key;
    [[nodiscard]] std::optional<Key> find(quint32 symbol) const;
    void send(quint32 symbol, quint32 modifiers);

    WaylandClient m_client;
    std::unique_ptr<xkb_context, void (*)(xkb_context*)> m_context;
    std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> m_keymap;
    zwp_virtual_keyboard_manager_v1* m_manager = nullptr;
    wl_seat* m_seat = nullptr;
    zwp_virtual_keyboard_v1* m_keyboard = nullptr;
    quint32 m_time = 0; // of the last key, in milliseconds
};

} // namespace Clipboard::Testing
