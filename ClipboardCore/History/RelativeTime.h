#pragma once

#include <QString>

/// How long ago something was, in a few characters.
namespace ClipboardCore::RelativeTime {

/// "now", "5m", "3h", "yesterday" or "4d". Both times in seconds; a difference that is negative or not finite is "now".
[[nodiscard]] QString label(double from, double to);

} // namespace ClipboardCore::RelativeTime
