#pragma once

#include <QString>

namespace ClipboardCore {

/// The virtual key codes that Tessaly's key tables are written in (an ANSI keyboard's hardware codes).
enum class KeyCode : int {
    a = 0,
    s = 1,
    f = 3,
    h = 4,
    z = 6,
    c = 8,
    v = 9,
    e = 14,
    r = 15,
    y = 16,
    t = 17,
    p = 35,
    return_ = 36,
    k = 40,
    n = 45,
    delete_ = 51,
    escape = 53,
    keypadEnter = 76,
    home = 115,
    pageUp = 116,
    forwardDelete = 117,
    end = 119,
    pageDown = 121,
    left = 123,
    right = 124,
    down = 125,
    up = 126,
    unknown = -1,
};

/// One key press, free of any toolkit. On Linux `command` is the Control key and `option` the Alt key.
struct KeyEvent
{
    KeyCode code = KeyCode::unknown;
    bool command = false;
    bool option = false;
    bool shift = false;
    bool control = false;
    /// The characters that the key types when modifiers other than Shift are ignored.
    QString charactersIgnoringModifiers;
};

} // namespace ClipboardCore
