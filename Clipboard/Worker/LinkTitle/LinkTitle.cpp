#include "LinkTitle.h"
#include "HtmlTitle.h"
#include "PageFetcher.h"

namespace Clipboard {

std::optional<QString> linkTitle(const QUrl& link, std::chrono::milliseconds limit)
{
    const std::optional<Page> page = fetchPage(
        link, limit, [](const Page& beginning) { return isTitleSettled(beginning.bytes, beginning.contentType); });
    return page ? htmlTitle(page->bytes, page->contentType) : std::nullopt;
}

} // namespace Clipboard
