#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// Plain text in the encodings in which X11 programs pass it.
namespace Clipboard::SelectionText {

/// The targets that carry plain text, the best first.
inline constexpr const char* targets[] = {
    "UTF8_STRING",   "text/plain;charset=utf-8", "text/plain;charset=UTF-8", "text/plain", "STRING", "TEXT",
    "COMPOUND_TEXT",
};

/// The text as UTF-8. `type` names the encoding (ICCCM 2.6.2: STRING is Latin-1; COMPOUND_TEXT is understood as far as
/// it stays in ASCII, Latin-1 or UTF-8). Bytes that do not fit it are replaced by U+FFFD; zero bytes at the end, which
/// some programs send along, are cut off. Nothing when the type is not one of text.
[[nodiscard]] std::optional<QByteArray> decode(QByteArrayView type, const QByteArray& bytes);

/// The text as Latin-1, with "?" for what Latin-1 does not have.
[[nodiscard]] QByteArray latin1(const QByteArray& utf8);

} // namespace Clipboard::SelectionText
