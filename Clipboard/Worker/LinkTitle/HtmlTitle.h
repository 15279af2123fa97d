#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Clipboard {

/// The title of an HTML page, of which `page` are the first bytes or all: the Open Graph title, else the title element.
/// `contentType` is the server's Content-Type header, empty when there was none. The title is one line without
/// entities. Nothing when the page has none, only empty ones or ones beyond `maxTitleLength`; any bytes are answered.
/// The encoding is a byte order mark's, else the header's, else that of a meta element, else UTF-8 when the bytes are
/// valid as that, else windows-1252 (html.spec.whatwg.org, "determining the character encoding").
[[nodiscard]] std::optional<QString> htmlTitle(const QByteArray& page, const QByteArray& contentType);

/// Whether no bytes that may follow could change what `htmlTitle` answers, save for the encoding of a page that does
/// not tell it: it is guessed from all that is there.
[[nodiscard]] bool isTitleSettled(const QByteArray& page, const QByteArray& contentType);

} // namespace Clipboard
