#include "Actions/ContentDetectors.h"
#include "Fuzzer.h"

#include <algorithm>

using namespace ClipboardCore;

void Fuzzer::run(QByteArrayView input)
{
    const auto slug = ContentDetectors::slug(text(input));
    if (!slug)
        return;
    const QByteArray& words = slug->utf8();
    require(!words.isEmpty() && !words.startsWith('-') && !words.endsWith('-') && !words.contains("--"),
            "hyphens only join");
    const auto isCapital = [](char c) { return c >= 'A' && c <= 'Z'; };
    require(std::none_of(words.begin(), words.end(), isCapital), "there are no capitals");
    // Without the marks between them, signs that stood apart can make one character, so that it takes a second time.
    // There is none when only the letters were dropped, as marks on something else.
    const auto again = ContentDetectors::slug(*slug);
    const auto last = again ? ContentDetectors::slug(*again) : again;
    require(!last || isResult(last, again->utf8()), "a slug's slug is its own");
}
