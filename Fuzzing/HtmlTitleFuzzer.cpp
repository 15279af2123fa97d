#include "Fuzzer.h"
#include "HtmlTitle.h"
#include "TitleText.h"

#include <tuple>

using namespace Clipboard;

/// The first line is the server's content type.
void Fuzzer::run(QByteArrayView input)
{
    const qsizetype lineEnd = std::max<qsizetype>(input.indexOf('\n'), 0);
    const QByteArray contentType = input.first(lineEnd).toByteArray();
    const QByteArray page = input.sliced(lineEnd).toByteArray();
    const auto title = htmlTitle(page, contentType);
    if (title) {
        require(!title->isEmpty() && title->simplified() == *title, "a title is one line");
        require(title->size() <= maxTitleLength, "a title is not endless");
    }
    // Reading stops where the title is settled; whether it is may be asked of any part of a page.
    std::ignore = isTitleSettled(page.first(page.size() / 2), contentType);
}
