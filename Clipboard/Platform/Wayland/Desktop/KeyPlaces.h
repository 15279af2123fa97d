#pragma once

#include "WaylandConnection.h"

#include <cstdint>
#include <memory>

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

    /// The key that types the letter, as the kernel numbers keys (input-event-codes.h): by the first layout that has
    /// it, for which one is in force only the window with the keyboard is told. `usual` while nothing is known, or when
    /// no layout has the letter.
    [[nodiscard]] uint32_t placeOf(char letter, uint32_t usual) const;

private:
    void keyboardCame();
    void keymapCame(int file, uint32_t size);

    wl_seat* m_seat = nullptr;
    wl_keyboard* m_keyboard = nullptr;
    std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> m_keymap;
};

} // namespace Clipboard::Wayland
