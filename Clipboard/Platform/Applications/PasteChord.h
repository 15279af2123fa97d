#pragma once

#include <QByteArray>

namespace Clipboard {

/// What a window says of its program, by the names that X11 gave these two.
struct WindowClass
{
    QByteArray instance;
    QByteArray name;
};

/// The keys by which a program pastes.
enum class PasteChord {
    ControlV,
    ControlShiftV, // terminals, where Ctrl+V belongs to the program inside
    ShiftInsert,   // xterm and its kin, which paste the primary selection
};

/// Decided by the window's class; Ctrl+V for programs not known to differ.
[[nodiscard]] PasteChord pasteChordOf(const WindowClass& windowClass);

} // namespace Clipboard
