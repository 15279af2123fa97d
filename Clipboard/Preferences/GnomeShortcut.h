#pragma once

#include "Support/KeyChord.h"

#include <QString>

#include <optional>

/// A custom shortcut of GNOME's that opens the panel, as its settings keep it.
namespace Clipboard::GnomeShortcut {

/// Whether the session is one of GNOME.
[[nodiscard]] bool isDesktop();

/// Has the list of the custom shortcuts' paths.
[[nodiscard]] QString listSchema();
[[nodiscard]] QString listKey();
/// Ours in that list.
[[nodiscard]] QString path();
/// The schema of ours, with its path: "name", "command" and "binding".
[[nodiscard]] QString schema();

/// "<Super><Shift>v", as GTK names keys.
[[nodiscard]] QString accelerator(const ClipboardCore::KeyChord& chord);
/// Nothing when it is no chord that this program knows.
[[nodiscard]] std::optional<ClipboardCore::KeyChord> chordOf(const QString& accelerator);

/// A string as GVariant's text format writes it.
[[nodiscard]] QString quoted(QString text);

} // namespace Clipboard::GnomeShortcut
