#pragma once

#include "Focus/KeyEvent.h"

class QKeyEvent;

namespace Clipboard {

/// A key press of the toolkit in the terms of the key tables. Control becomes command, Alt option, Super control;
/// Backspace is delete_, Delete forwardDelete. Letters go by what they type; on a layout that types no Latin letters,
/// by their place on the keyboard. So do digits with Control where their keys type something else without Shift, as in
/// France. A key that no table names is unknown.
[[nodiscard]] ClipboardCore::KeyEvent translateKey(const QKeyEvent& event);

} // namespace Clipboard
