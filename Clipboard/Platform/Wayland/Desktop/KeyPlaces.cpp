#include "KeyPlaces.h"

#include <sys/mman.h>
#include <unistd.h>

#include <xkbcommon/xkbcommon.h>

#include <algorithm>

namespace Clipboard::Wayland {

namespace {

constexpr uint32_t firstKernelKey = 8; // what a keymap calls the key that the kernel numbers 0

// Those with a dozen layouts take 100 KiB.
constexpr uint32_t largestKeymap = 4 << 20;

} // namespace

KeyPlaces::KeyPlaces(const WaylandConnection& connection)
    : m_seat(static_cast<wl_seat*>(connection.bind(wl_seat_interface, 1)))
    , m_keymap(nullptr, &xkb_keymap_unref)
{
    static constexpr wl_seat_listener listener{
        [](void* self, wl_seat*, uint32_t devices) {
            if ((devices & WL_SEAT_CAPABILITY_KEYBOARD) != 0)
                static_cast<KeyPlaces*>(self)->keyboardCame();
        },
        [](void*, wl_seat*, const char*) {},
    };
    if (m_seat != nullptr)
        wl_seat_add_listener(m_seat, &listener, this);
}

KeyPlaces::~KeyPlaces()
{
    if (m_keyboard != nullptr)
        wl_keyboard_destroy(m_keyboard);
    if (m_seat != nullptr)
        wl_seat_destroy(m_seat);
}

void KeyPlaces::keyboardCame()
{
    if (m_keyboard != nullptr)
        return;
    m_keyboard = wl_seat_get_keyboard(m_seat);
    static constexpr auto ignore = [](void*, wl_keyboard*, auto...) {};
    static constexpr wl_keyboard_listener listener{
        [](void* self, wl_keyboard*, uint32_t format, int file, uint32_t size) {
            if (format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1)
                static_cast<KeyPlaces*>(self)->keymapCame(file, size);
            ::close(file);
        },
        ignore,
        ignore,
        ignore,
        ignore,
        ignore,
    };
    wl_keyboard_add_listener(m_keyboard, &listener, this);
}

void KeyPlaces::keymapCame(int file, uint32_t size)
{
    if (size == 0 || size > largestKeymap)
        return;
    void* text = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (text == MAP_FAILED)
        return;
    const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES),
                                                                       &xkb_context_unref);
    m_keymap.reset(xkb_keymap_new_from_buffer(context.get(), static_cast<const char*>(text), size - 1,
                                              XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS));
    ::munmap(text, size);
}

std::optional<uint32_t> KeyPlaces::placeIn(uint32_t layout, char letter) const
{
    const xkb_keysym_t wanted = xkb_utf32_to_keysym(static_cast<unsigned char>(letter));
    const xkb_keycode_t end = xkb_keymap_max_keycode(m_keymap.get());
    for (xkb_keycode_t key = std::max(xkb_keymap_min_keycode(m_keymap.get()), firstKernelKey); key <= end; ++key) {
        const xkb_keysym_t* symbols = nullptr;
        if (xkb_keymap_key_get_syms_by_level(m_keymap.get(), key, layout, 0, &symbols) == 1 && *symbols == wanted)
            return key - firstKernelKey;
    }
    return {};
}

uint32_t KeyPlaces::placeOf(char letter, uint32_t layoutInForce, uint32_t usual) const
{
    if (!m_keymap)
        return usual;
    const xkb_layout_index_t layouts = xkb_keymap_num_layouts(m_keymap.get());
    if (const auto place = layoutInForce < layouts ? placeIn(layoutInForce, letter) : std::nullopt)
        return *place;
    for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
        if (const auto place = placeIn(layout, letter))
            return *place;
    }
    return usual;
}

} // namespace Clipboard::Wayland
