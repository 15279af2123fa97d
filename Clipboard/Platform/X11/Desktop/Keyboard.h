#pragma once

#include "X11Session.h"

#include <xcb/xcb_keysyms.h>

#include <bitset>
#include <memory>
#include <optional>
#include <vector>

namespace Clipboard::X11 {

/// Which key is where on the user's keyboard. A snapshot of the layout: made anew when that changes.
class Keyboard final
{
public:
    explicit Keyboard(std::shared_ptr<X11Session> session);
    /// The layout may have changed.
    void reload();

    /// The keys that bear the symbol unshifted in any of the user's layouts, those of the layout in use first.
    [[nodiscard]] std::vector<xcb_keycode_t> keysWith(xcb_keysym_t symbol);
    /// A key that is the modifier, whatever it bears; nothing when none is.
    [[nodiscard]] std::optional<xcb_keycode_t> modifierKey(xcb_map_index_t modifier);
    /// The keys of all the modifiers in the mask.
    [[nodiscard]] std::bitset<256> modifierKeys(uint32_t mask) const;
    /// A key code that stands for no key: it bears no symbol and is no modifier. Nothing when all are taken.
    [[nodiscard]] std::optional<xcb_keycode_t> spareKey();
    /// The modifier bit of the key; `otherwise` when the key is no modifier.
    [[nodiscard]] uint16_t modifierOf(xcb_keysym_t symbol, uint16_t otherwise);
    /// The keys that are held down.
    [[nodiscard]] std::bitset<256> pressedKeys();

private:
    struct FreeSymbols
    {
        void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
    };

    /// The keys of each modifier, `keycodes_per_modifier` for each; null when the server has gone.
    [[nodiscard]] XcbPointer<xcb_get_modifier_mapping_reply_t> modifiers() const;
    [[nodiscard]] int currentGroup();

    std::shared_ptr<X11Session> m_session;
    std::unique_ptr<xcb_key_symbols_t, FreeSymbols> m_symbols;
};

} // namespace Clipboard::X11
