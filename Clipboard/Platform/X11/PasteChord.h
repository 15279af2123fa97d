#pragma once

#include "X11/X11Session.h"

namespace Clipboard::X11 {

/// The keys by which a program pastes.
enum class PasteChord {
    ControlV,
    ControlShiftV, // terminals, where Ctrl+V belongs to the program inside
    ShiftInsert,   // xterm and its kin, which paste the primary selection
};

/// Decided by the window's class; Ctrl+V for programs not known to differ.
[[nodiscard]] PasteChord pasteChordOf(const X11Session::WindowClass& windowClass);

} // namespace Clipboard::X11
