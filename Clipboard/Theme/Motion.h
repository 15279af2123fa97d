#pragma once

#include "Theme.h"

/// Whether things move at all.
namespace Clipboard::Motion {

/// The given duration, or 0 when the user asked for reduced motion.
[[nodiscard]] int duration(int milliseconds);

[[nodiscard]] bool isReduced();
void setReduced(bool reduced);

} // namespace Clipboard::Motion
