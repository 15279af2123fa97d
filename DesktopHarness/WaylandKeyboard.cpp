#include "WaylandKeyboard.h"

#include <virtual-keyboard-unstable-v1-client-protocol.h>
#include <xkbcommon/xkbcommon.h>

#include <QStringList>
#include <QTemporaryFile>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

namespace {

constexpr quint32 firstKeyOfX11 = 8; // what X11 adds to the kernel's numbers

// The real modifiers of every keymap (X Keyboard Extension, section 2.2).
constexpr quint32 shift = 1;
const QHash<QString, quint32> modifiersByName{{u"shift"_s, shift}, {u"ctrl"_s, 4}, {u"alt"_s, 8}, {u"super"_s, 64}};

} // namespace

struct WaylandKeyboard::Key
{
    quint32 code;
    bool isShifted;
};

WaylandKeyboard::WaylandKeyboard(const VirtualSession& session)
    : m_client(session)
    , m_context(xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref)
    , m_keymap(nullptr, xkb_keymap_unref)
{
    if (m_client.display() == nullptr)
        return;
    constexpr xkb_rule_names american{"evdev", "pc105", "us", nullptr, nullptr};
    m_keymap.reset(xkb_keymap_new_from_names(m_context.get(), &american, XKB_KEYMAP_COMPILE_NO_FLAGS));
    m_manager = static_cast<zwp_virtual_keyboard_manager_v1*>(m_client.bind(zwp_virtual_keyboard_manager_v1_interface));
    m_seat = static_cast<wl_seat*>(m_client.bind(wl_seat_interface));
    const std::unique_ptr<char, void (*)(void*)> text(
        m_keymap ? xkb_keymap_get_as_string(m_keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1) : nullptr, std::free);
    QTemporaryFile file;
    if (!text || m_manager == nullptr || m_seat == nullptr || !file.open())
        return;
    const QByteArray map(text.get(), static_cast<qsizetype>(qstrlen(text.get()) + 1)); // with its end
    if (file.write(map) != map.size() || !file.flush())
        return;
    m_keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(m_manager, m_seat);
    zwp_virtual_keyboard_v1_keymap(m_keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.handle(),
                                   static_cast<uint32_t>(map.size()));
    wl_display_roundtrip(m_client.display());
}

WaylandKeyboard::~WaylandKeyboard()
{
    if (m_keyboard != nullptr)
        zwp_virtual_keyboard_v1_destroy(m_keyboard);
    if (m_seat != nullptr)
        wl_seat_destroy(m_seat);
    if (m_manager != nullptr)
        zwp_virtual_keyboard_manager_v1_destroy(m_manager);
}

void WaylandKeyboard::press(const QString& chord)
{
    QStringList names = chord.split(u'+');
    const QByteArray key = names.takeLast().toLatin1();
    quint32 modifiers = 0;
    for (const QString& name : names)
        modifiers |= modifiersByName.value(name);
    send(xkb_keysym_from_name(key.constData(), XKB_KEYSYM_NO_FLAGS), modifiers);
}

void WaylandKeyboard::type(const QString& text)
{
    for (const uint letter : text.toUcs4())
        send(letter == '\n' ? XKB_KEY_Return : xkb_utf32_to_keysym(letter), 0);
}

std::optional<WaylandKeyboard::Key> WaylandKeyboard::find(quint32 symbol) const
{
    const xkb_keycode_t last = xkb_keymap_max_keycode(m_keymap.get());
    for (xkb_keycode_t code = xkb_keymap_min_keycode(m_keymap.get()); code <= last; ++code) {
        for (const xkb_level_index_t level : {0, 1}) {
            const xkb_keysym_t* symbols = nullptr;
            if (xkb_keymap_key_get_syms_by_level(m_keymap.get(), code, 0, level, &symbols) == 1 && *symbols == symbol)
                return Key{code - firstKeyOfX11, level == 1};
        }
    }
    return {};
}

void WaylandKeyboard::send(quint32 symbol, quint32 modifiers)
{
    const std::optional<Key> key = find(symbol);
    if (!key)
        qFatal("There is no key for the symbol %u", symbol);
    zwp_virtual_keyboard_v1_modifiers(m_keyboard, modifiers | (key->isShifted ? shift : 0), 0, 0, 0);
    zwp_virtual_keyboard_v1_key(m_keyboard, ++m_time, key->code, WL_KEYBOARD_KEY_STATE_PRESSED);
    zwp_virtual_keyboard_v1_key(m_keyboard, ++m_time, key->code, WL_KEYBOARD_KEY_STATE_RELEASED);
    zwp_virtual_keyboard_v1_modifiers(m_keyboard, 0, 0, 0, 0);
    wl_display_roundtrip(m_client.display());
}

} // namespace Clipboard::Testing
