#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Clipboard {

/// The encoding that a page or a server calls `label`, under the name that QStringDecoder knows it by. The labels are
/// those of the WHATWG Encoding Standard (encoding.spec.whatwg.org), so "latin1" is windows-1252 as in every browser;
/// nothing for any other, among them encodings that could hide markup (UTF-7).
[[nodiscard]] std::optional<QByteArray> encodingForLabel(const QByteArray& label);

/// The value of "charset=" in a Content-Type header, or in the meta element that stands for one.
[[nodiscard]] std::optional<QByteArray> charsetParameter(const QByteArray& contentType);

/// The encoding that the bytes and the server agree on without a look at the markup: a byte order mark, else the
/// header's. Nothing when neither says.
[[nodiscard]] std::optional<QByteArray> encodingFromOutside(const QByteArray& page, const QByteArray& contentType);

/// The encoding of a page that does not say: UTF-8 when the bytes are valid as that, else windows-1252. A character cut
/// off at the end of the bytes is no fault.
[[nodiscard]] QByteArray guessedEncoding(const QByteArray& page);

/// The page as text, without its byte order mark; U+FFFD stands for what the encoding does not know.
[[nodiscard]] QString decodedPage(const QByteArray& page, const QByteArray& encoding);

} // namespace Clipboard
