#include "Keyboard.h"

#include <X11/keysym.h>

#include <algorithm>

namespace Clipboard::X11 {

namespace {

// Where the V of a PC keyboard is, in the numbers of the kernel's key codes plus eight.
constexpr xcb_keycode_t placeOfV = 55;

// In the core protocol's table the first two layouts have a pair of columns each; further ones have none of their own.
constexpr int columnsPerGroup = 2;
constexpr int groupsInTable = 2;

} // namespace

Keyboard::Keyboard(std::shared_ptr<X11Session> session)
    : m_session(std::move(session))
{
    reload();
}

void Keyboard::reload()
{
    m_symbols.reset(xcb_key_symbols_alloc(m_session->xcb()));
}

std::vector<xcb_keycode_t> Keyboard::keysWith(xcb_keysym_t symbol)
{
    const xcb_setup_t* setup = xcb_get_setup(m_session->xcb());
    const int current = currentGroup();
    std::vector<xcb_keycode_t> keys;
    for (int offset = 0; offset < groupsInTable; ++offset) {
        const int column = (current + offset) % groupsInTable * columnsPerGroup;
        for (int code = setup->min_keycode; code <= setup->max_keycode; ++code) {
            const auto key = static_cast<xcb_keycode_t>(code);
            if (xcb_key_symbols_get_keysym(m_symbols.get(), key, column) == symbol &&
                std::ranges::find(keys, key) == keys.end())
                keys.push_back(key);
        }
    }
    if (keys.empty() && symbol == XK_v)
        keys.push_back(placeOfV);
    return keys;
}

uint16_t Keyboard::modifierOf(xcb_keysym_t symbol, uint16_t otherwise)
{
    const XcbPointer<xcb_get_modifier_mapping_reply_t> reply(
        xcb_get_modifier_mapping_reply(m_session->xcb(), xcb_get_modifier_mapping(m_session->xcb()), nullptr));
    if (!reply)
        return otherwise;
    const auto keys = keysWith(symbol);
    const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(reply.get());
    const int perModifier = reply->keycodes_per_modifier;
    for (int i = 0; i < 8 * perModifier; ++i) {
        if (codes[i] != 0 && std::ranges::find(keys, codes[i]) != keys.end())
            return static_cast<uint16_t>(1U << static_cast<unsigned>(i / perModifier));
    }
    return otherwise;
}

std::bitset<256> Keyboard::pressedKeys()
{
    std::bitset<256> pressed;
    const XcbPointer<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(m_session->xcb(), xcb_query_keymap(m_session->xcb()), nullptr));
    for (size_t key = 0; reply && key < pressed.size(); ++key)
        pressed[key] = ((reply->keys[key / 8] >> (key % 8)) & 1U) != 0;
    return pressed;
}

/// The layout in use, from 0: the server puts it into bits 13 and 14 of the modifier state (XKB protocol, 2.2.2).
int Keyboard::currentGroup()
{
    const XcbPointer<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(m_session->xcb(), xcb_query_pointer(m_session->xcb(), m_session->root()), nullptr));
    const int group = reply ? (reply->mask >> 13) & 3 : 0;
    return group < groupsInTable ? group : 0;
}

} // namespace Clipboard::X11
