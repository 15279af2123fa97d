#pragma once

#include <QtGlobal>

namespace ClipboardCore {

/// What a code point does to the boundary before and after it: the property Grapheme_Cluster_Break (UAX #29, table 2),
/// with Extended_Pictographic, which no other class has, beside it.
enum class GraphemeClass : quint8 {
    other,
    carriageReturn,
    lineFeed,
    control, // invisible format characters too
    extend,
    joiner,
    spacingMark,
    prepend,
    regionalIndicator,
    picture,
    hangulLead,
    hangulVowel,
    hangulTail,
    hangulOpenSyllable,
    hangulClosedSyllable,
};

/// Surrogates count as control characters.
[[nodiscard]] GraphemeClass graphemeClass(char32_t codePoint);

} // namespace ClipboardCore
