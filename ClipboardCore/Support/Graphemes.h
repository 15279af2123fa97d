#pragma once

#include "Support/Utf8Text.h"

#include <QString>
#include <QStringView>

/// User-perceived characters: extended grapheme clusters (UAX #29). Only as much of a text is looked at as is needed.
namespace ClipboardCore::Graphemes {

/// A character longer than this many UTF-16 units counts as several: a letter under thousands of marks is an attack on
/// the layout, not a letter. Real ones, emoji families included, stay far below.
inline constexpr qsizetype longestCharacter = 256;

/// The first `count` characters.
[[nodiscard]] QStringView prefix(QStringView text, qsizetype count);

struct Prefix
{
    QString text;
    bool isWhole = false; // the text has no more characters than that
};
/// The first `count` characters of a text of any size, at the same cost for every size.
[[nodiscard]] Prefix prefix(const Utf8Text& text, qsizetype count);
[[nodiscard]] Prefix prefixOfUtf8(QByteArrayView utf8, qsizetype count);

/// The number of characters. Looks at all of them: for texts known to be short.
[[nodiscard]] qsizetype count(QStringView text);
/// The same of a text of any size; fast where it is ASCII.
[[nodiscard]] qsizetype countOfUtf8(QByteArrayView utf8);

/// True when the ASCII sign at `at` is a character of its own: not with a mark on it, nor half of CR LF.
[[nodiscard]] bool standsAlone(QByteArrayView utf8, qsizetype at);

} // namespace ClipboardCore::Graphemes
