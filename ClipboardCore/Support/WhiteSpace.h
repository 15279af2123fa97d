#pragma once

#include <QByteArrayView>

/// The Unicode property White_Space (UAX #44), on well-formed UTF-8. Nothing here copies the text.
namespace ClipboardCore::WhiteSpace {

/// The length of the white space at the beginning.
[[nodiscard]] qsizetype leading(QByteArrayView text);

/// The length of what is no white space at the beginning.
[[nodiscard]] qsizetype leadingWord(QByteArrayView text);

/// `text` without white space at both ends.
[[nodiscard]] QByteArrayView trimmed(QByteArrayView text);

/// True when there is nothing but white space. Stops at the first code point that is none.
[[nodiscard]] bool isBlank(QByteArrayView text);

/// True when there is white space anywhere. Stops at the first.
[[nodiscard]] bool isIn(QByteArrayView text);

} // namespace ClipboardCore::WhiteSpace
