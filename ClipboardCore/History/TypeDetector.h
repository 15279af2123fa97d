#pragma once

#include "History/ClipType.h"
#include "Support/Utf8Text.h"

/// Decides which kind of entry a copied text becomes.
namespace ClipboardCore::TypeDetector {

/// looksLikeCode() looks at this many characters from the beginning.
inline constexpr qsizetype sampleLimit = 4096;

/// color, link, code or text; the white space around the text does not count. The cost does not grow with the text,
/// but for a link, whose every character is looked at for white space.
[[nodiscard]] ClipType classify(const Utf8Text& text);

/// True when the beginning shows at least two signs of source code: a keyword; an arrow; a pair of braces; an end in a
/// semicolon or an opening brace, or a semicolon at a line end.
[[nodiscard]] bool looksLikeCode(const Utf8Text& text);

} // namespace ClipboardCore::TypeDetector
