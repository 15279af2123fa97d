#pragma once

#include "X11/X11Session.h"

#include <xcb/xcb_keysyms.h>

#include <bitset>
#include <memory>
#include <vector>

namespace Clipboard::X11 {

/// Which key is where on the user's keyboard. A snapshot of the layout: made anew when that changes.
class Keyboard final
{
public:
    explicit Keyboard(std::shared_ptr<X11Session> session);
    /// The layout may have changed.
    void reload();

    /// The keys that bear the symbol unshifted in any of the user's layouts, those of the layout in use first. When no
    /// layout has Latin letters, the place where a PC keyboard has its V stands in for that letter, as programs
    /// themselves do it for their shortcuts.
    [[nodiscard]] std::vector<xcb_keycode_t> keysWith(xcb_keysym_t symbol);
    /// The modifier bit of the key; `otherwise` when the key is no modifier.
    [[nodiscard]] uint16_t modifierOf(xcb_keysym_t symbol, uint16_t otherwise);
    /// The keys that are held down.
    [[nodiscard]] std::bitset<256> pressedKeys();

private:
    struct FreeSymbols
    {
        void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
    };

    [[nodiscard]] int currentGroup();

    std::shared_ptr<X11Session> m_session;
    std::unique_ptr<xcb_key_symbols_t, FreeSymbols> m_symbols;
};

} // namespace Clipboard::X11
