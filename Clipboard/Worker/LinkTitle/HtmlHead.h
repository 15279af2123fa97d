#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Clipboard {

/// What the head of an HTML page says about the page's name, tidied.
struct HtmlHead
{
    std::optional<QString> ogTitle; ///< the Open Graph title (ogp.me)
    std::optional<QString> title;   ///< the first title element with a text that is the page's own, not a picture's
    bool settled = false;           ///< nothing that could follow would be preferred to what was found
};

/// Reads a page that may be cut off anywhere and broken in any way. A title that has no end is none. Reading ends at
/// the first name after the head, and where elements are nested deeper than any honest page nests them.
[[nodiscard]] HtmlHead readHtmlHead(const QString& page);

/// The encoding that the meta elements of the head declare, as QStringDecoder knows it. The first label that is known
/// counts. The page is taken byte by byte, as all encodings that can be declared this way agree on ASCII.
[[nodiscard]] std::optional<QByteArray> declaredEncoding(const QByteArray& page);

} // namespace Clipboard
