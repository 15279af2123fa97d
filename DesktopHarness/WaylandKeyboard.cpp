#include "WaylandKeyboard.h"

#include <xkbcommon/xkbcommon.h>

#include <QHash>
#include <QStringList>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

namespace {

constexpr quint32 firstKeyOfX11 = 8; // what X11 adds to the kernel's numbers

const QHash<QString, quint32> modifiersByName{{u"shift"_s, WaylandKeyboard::shift},
                                              {u"ctrl"_s, WaylandKeyboard::control},
                                              {u"alt"_s, WaylandKeyboard::alt},
                                              {u"super"_s, WaylandKeyboard::super}};

} // namespace

struct WaylandKeyboard::Key
{
    quint32 code;
    bool isShifted;
};

WaylandKeyboard::WaylandKeyboard()
    : m_context(xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref)
    , m_keymap(nullptr, xkb_keymap_unref)
{
    constexpr xkb_rule_names american{"evdev", "pc105", "us", nullptr, nullptr};
    m_keymap.reset(xkb_keymap_new_from_names(m_context.get(), &american, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

WaylandKeyboard::~WaylandKeyboard() = default;

QByteArray WaylandKeyboard::keymap() const
{
    const std::unique_ptr<char, void (*)(void*)> text(
        xkb_keymap_get_as_string(m_keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1), std::free);
    return text.get();
}

void WaylandKeyboard::press(const QString& chord)
{
    QStringList names = chord.split(u'+');
    const QByteArray key = names.takeLast().toLatin1();
    quint32 modifiers = 0;
    for (const QString& name : names)
        modifiers |= modifiersByName.value(name);
    sendSymbol(xkb_keysym_from_name(key.constData(), XKB_KEYSYM_NO_FLAGS), modifiers);
}

void WaylandKeyboard::type(const QString& text)
{
    for (const uint letter : text.toUcs4())
        sendSymbol(letter == '\n' ? XKB_KEY_Return : xkb_utf32_to_keysym(letter), 0);
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

void WaylandKeyboard::sendSymbol(quint32 symbol, quint32 modifiers)
{
    const std::optional<Key> key = find(symbol);
    if (!key)
        qFatal("There is no key for the symbol %u", symbol);
    send(key->code, modifiers | (key->isShifted ? quint32(shift) : 0));
}

} // namespace Clipboard::Testing
