#include "Fuzzer.h"
#include "HtmlTitle.h"
#include "Support/Utf8.h"
#include "TitleText.h"

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
    // What follows may still show that a page that does not tell its encoding is not UTF-8.
    const QByteArray beginning = page.first(page.size() / 2);
    if (ClipboardCore::Utf8::isValid(beginning) == ClipboardCore::Utf8::isValid(page) &&
        isTitleSettled(beginning, contentType))
        require(htmlTitle(beginning, contentType) == title, "what is settled does not change");
}
