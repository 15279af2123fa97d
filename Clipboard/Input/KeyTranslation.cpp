#include "KeyTranslation.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

using ClipboardCore::KeyCode;
using ClipboardCore::KeyEvent;

namespace Clipboard {

namespace {

struct Mapping
{
    int key;
    KeyCode code;
};

constexpr std::array mappings{
    Mapping{Qt::Key_A, KeyCode::a},
    Mapping{Qt::Key_C, KeyCode::c},
    Mapping{Qt::Key_E, KeyCode::e},
    Mapping{Qt::Key_F, KeyCode::f},
    Mapping{Qt::Key_H, KeyCode::h},
    Mapping{Qt::Key_K, KeyCode::k},
    Mapping{Qt::Key_N, KeyCode::n},
    Mapping{Qt::Key_P, KeyCode::p},
    Mapping{Qt::Key_R, KeyCode::r},
    Mapping{Qt::Key_S, KeyCode::s},
    Mapping{Qt::Key_T, KeyCode::t},
    Mapping{Qt::Key_V, KeyCode::v},
    Mapping{Qt::Key_Y, KeyCode::y},
    Mapping{Qt::Key_Z, KeyCode::z},
    Mapping{Qt::Key_Backspace, KeyCode::delete_},
    Mapping{Qt::Key_Delete, KeyCode::forwardDelete},
    Mapping{Qt::Key_Down, KeyCode::down},
    Mapping{Qt::Key_End, KeyCode::end},
    Mapping{Qt::Key_Enter, KeyCode::keypadEnter},
    Mapping{Qt::Key_Escape, KeyCode::escape},
    Mapping{Qt::Key_Home, KeyCode::home},
    Mapping{Qt::Key_Left, KeyCode::left},
    Mapping{Qt::Key_PageDown, KeyCode::pageDown},
    Mapping{Qt::Key_PageUp, KeyCode::pageUp},
    Mapping{Qt::Key_Return, KeyCode::return_},
    Mapping{Qt::Key_Right, KeyCode::right},
    Mapping{Qt::Key_Up, KeyCode::up},
};

/// The Latin letter at a key's place on an ANSI keyboard, by the key codes that X11 and Wayland share (Linux input
/// event codes plus 8); 0 for other keys.
int letterAtPlace(quint32 scanCode)
{
    struct Row
    {
        quint32 first;
        QByteArrayView letters;
    };
    static constexpr std::array rows{Row{24, "QWERTYUIOP"}, Row{38, "ASDFGHJKL"}, Row{52, "ZXCVBNM"}};
    for (const Row& row : rows) {
        const qsizetype column = static_cast<qsizetype>(scanCode) - row.first;
        if (column >= 0 && column < row.letters.size())
            return row.letters[column];
    }
    return 0;
}

/// The digit on a key of the row above the letters, by the same codes; 0 for other keys.
int digitAtPlace(quint32 scanCode)
{
    constexpr quint32 placeOfOne = 10; // up to nine; the zero that follows has no meaning in any table
    return scanCode >= placeOfOne && scanCode < placeOfOne + 9 ? static_cast<int>('1' + (scanCode - placeOfOne)) : 0;
}

bool isDigit(int key)
{
    return key >= Qt::Key_0 && key <= Qt::Key_9;
}

/// Qt's codes for keys that type text are their characters, below those of its special keys.
bool typesOtherScript(int key)
{
    constexpr int firstNonLatin = 0x0250;
    return key >= firstNonLatin && key < Qt::Key_Escape;
}

} // namespace

KeyEvent translateKey(const QKeyEvent& event)
{
    int key = event.key();
    const auto takePlaceFor = [&key](int keyAtPlace) {
        if (keyAtPlace != 0)
            key = keyAtPlace;
    };
    const bool isControlAlone = (event.modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
    if (typesOtherScript(key))
        takePlaceFor(letterAtPlace(event.nativeScanCode()));
    if (isControlAlone && !isDigit(key))
        takePlaceFor(digitAtPlace(event.nativeScanCode()));
    KeyEvent translated;
    const auto found =
        std::find_if(mappings.begin(), mappings.end(), [key](const Mapping& mapping) { return mapping.key == key; });
    if (found != mappings.end())
        translated.code = found->code;
    translated.command = event.modifiers().testFlag(Qt::ControlModifier);
    translated.option = event.modifiers().testFlag(Qt::AltModifier);
    translated.control = event.modifiers().testFlag(Qt::MetaModifier);
    translated.shift = event.modifiers().testFlag(Qt::ShiftModifier);
    if (key > 0 && key < Qt::Key_Escape)
        translated.charactersIgnoringModifiers = QChar(static_cast<char16_t>(key)).toLower();
    return translated;
}

} // namespace Clipboard
