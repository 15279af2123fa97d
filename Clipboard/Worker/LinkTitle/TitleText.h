#pragma once

#include <QString>

#include <optional>

namespace Clipboard {

/// The longest title that is one, in UTF-16 code units: honest ones stay below a few hundred, and beyond this nobody
/// wants it inside a link.
inline constexpr qsizetype maxTitleLength = 4096;

/// A title as it can stand in a line: white space collapsed to single blanks and trimmed, without control characters.
/// Nothing when nothing is left, or more than `maxTitleLength`.
[[nodiscard]] std::optional<QString> tidiedTitle(QString title);

} // namespace Clipboard
