#pragma once

#include <QStringView>

#include <chrono>
#include <optional>

namespace Clipboard::Command {

/// "90s", "45m", "2h", "1h30m", "1d": at least a second, a week at most. Nothing for anything else.
[[nodiscard]] std::optional<std::chrono::seconds> duration(QStringView text);

} // namespace Clipboard::Command
