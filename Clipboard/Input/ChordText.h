#pragma once

#include "Support/KeyChord.h"

#include <optional>

class QKeyEvent;

namespace Clipboard {

/// The chord in the words of the user's language, as it stands on key caps and in sentences.
[[nodiscard]] QString shownChord(const ClipboardCore::KeyChord& chord);

/// The chord that was pressed, whatever the layout; nothing when a hot key cannot be that.
[[nodiscard]] std::optional<ClipboardCore::KeyChord> pressedChord(const QKeyEvent& event);

} // namespace Clipboard
