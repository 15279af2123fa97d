#include "Keyboard.h"

#include <algorithm>
#include <span>

namespace Clipboard::X11 {

namespace {

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
            if (xcb_key_symbols_get_keysym(m_symbols.get(), key, column) == symbol && key != m_session->lentKey() &&
                std::ranges::find(keys, key) == keys.end())
                keys.push_back(key);
        }
    }
    return keys;
}

XcbPointer<xcb_get_modifier_mapping_reply_t> Keyboard::modifiers() const
{
    const auto cookie = xcb_get_modifier_mapping(m_session->xcb());
    return XcbPointer<xcb_get_modifier_mapping_reply_t>(
        xcb_get_modifier_mapping_reply(m_session->xcb(), cookie, nullptr));
}

std::optional<xcb_keycode_t> Keyboard::modifierKey(xcb_map_index_t modifier)
{
    const auto reply = modifiers();
    if (!reply)
        return {};
    const std::span keys(xcb_get_modifier_mapping_keycodes(reply.get()) +
                             size_t(modifier) * reply->keycodes_per_modifier,
                         reply->keycodes_per_modifier);
    const auto found = std::ranges::find_if(keys, [](xcb_keycode_t key) { return key != 0; });
    return found == keys.end() ? std::nullopt : std::optional(*found);
}

std::bitset<256> Keyboard::modifierKeys(uint32_t mask) const
{
    std::bitset<256> found;
    const auto reply = modifiers();
    const xcb_keycode_t* codes = reply ? xcb_get_modifier_mapping_keycodes(reply.get()) : nullptr;
    const unsigned count = reply ? 8U * reply->keycodes_per_modifier : 0;
    for (unsigned i = 0; i < count; ++i) {
        if (codes[i] != 0 && (mask >> (i / reply->keycodes_per_modifier) & 1U) != 0)
            found.set(codes[i]);
    }
    return found;
}

std::optional<xcb_keycode_t> Keyboard::spareKey()
{
    const xcb_setup_t* setup = xcb_get_setup(m_session->xcb());
    const int count = setup->max_keycode - setup->min_keycode + 1;
    const auto cookie = xcb_get_keyboard_mapping(m_session->xcb(), setup->min_keycode, static_cast<uint8_t>(count));
    const XcbPointer<xcb_get_keyboard_mapping_reply_t> mapping(
        xcb_get_keyboard_mapping_reply(m_session->xcb(), cookie, nullptr));
    const auto modifierReply = modifiers();
    if (!mapping || !modifierReply)
        return {};
    const std::span symbols(xcb_get_keyboard_mapping_keysyms(mapping.get()),
                            static_cast<size_t>(xcb_get_keyboard_mapping_keysyms_length(mapping.get())));
    const std::span modifierKeys(xcb_get_modifier_mapping_keycodes(modifierReply.get()),
                                 static_cast<size_t>(xcb_get_modifier_mapping_keycodes_length(modifierReply.get())));
    // From the end: there are the keys that hardly any keyboard has.
    for (int index = count - 1; index >= 0; --index) {
        const auto key = static_cast<xcb_keycode_t>(setup->min_keycode + index);
        const size_t perKey = mapping->keysyms_per_keycode;
        const bool isFree = std::ranges::all_of(symbols.subspan(static_cast<size_t>(index) * perKey, perKey),
                                                [](xcb_keysym_t symbol) { return symbol == XCB_NO_SYMBOL; });
        if (isFree && std::ranges::find(modifierKeys, key) == modifierKeys.end())
            return key;
    }
    return {};
}

uint16_t Keyboard::modifierOf(xcb_keysym_t symbol, uint16_t otherwise)
{
    const auto reply = modifiers();
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
