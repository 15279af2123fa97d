#pragma once

#include "Theme.h"

/// Whether things move at all.
namespace Clipboard::Motion {

/// The given duration, or 0 when the user asked for reduced motion.
[[nodiscard]] int duration(int milliseconds);

[[nodiscard]] bool isReduced();
void setReduced(bool reduced);

/// Asks the desktop for its setting and follows its changes, where a settings portal is running
/// (https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Settings.html). Returns at once.
void followDesktop();

} // namespace Clipboard::Motion
