#include "HtmlTitle.h"
#include "HtmlHead.h"
#include "PageCharset.h"

namespace Clipboard {

namespace {

HtmlHead headOf(const QByteArray& page, const QByteArray& contentType)
{
    std::optional<QByteArray> encoding = encodingFromOutside(page, contentType);
    if (!encoding)
        encoding = declaredEncoding(page);
    if (!encoding)
        encoding = guessedEncoding(page);
    return readHtmlHead(decodedPage(page, *encoding));
}

} // namespace

std::optional<QString> htmlTitle(const QByteArray& page, const QByteArray& contentType)
{
    const HtmlHead head = headOf(page, contentType);
    return head.ogTitle ? head.ogTitle : head.title;
}

bool isTitleSettled(const QByteArray& page, const QByteArray& contentType)
{
    return headOf(page, contentType).settled;
}

} // namespace Clipboard
