#pragma once

#include "WaylandConnection.h"

#include <cstdint>
#include <memory>
#include <optional>

struct wl_keyboard;
struct wl_seat;
struct xkb_keymap;

namespace Clipboard::Wayland {

/// Where the keys of the user's keyboard are, by the keymap that the compositor hands to every program. Main thread.
class KeyPlaces final
{
public:
    /// The connection has to outlive it.
    explicit KeyPlaces(const WaylandConnection& connection);
    ~KeyPlaces();
    KeyPlaces(const KeyPlaces&) = delete;
    KeyPlaces& operator=(const KeyPlaces&) = delete;

    /// The key that types the letter, as the kernel numbers keys (input-event-codes.h): by the layout in force or, when
    /// that lacks the letter, by the first one that has it, as programs look for the key of a shortcut. `usual` while
    /// nothing is known, or when no layout has the letter.
    [[nodiscard]] uint32_t placeOf(char letter, uint32_t layoutInForce, uint32_t usual) const;

private:
    void keyboardCame();
    void keymapCame(int file, uint32_t size);
    [[nodiscard]] std::optional<uint32_t> placeIn(uint32_t layout, char letter) const;

    wl_seat* m_seat = nullptr;
    wl_keyboard* m_keyboard = nullptr;
    std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> m_keymap;
};

} // namespace Clipboard::Wayland
