#include "Support/Graphemes.h"

#include "Support/Utf8.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <limits>

namespace ClipboardCore::Graphemes {

namespace {

struct Extent
{
    qsizetype characters = 0;
    qsizetype units = 0;
};

/// The length of a first character that is longer than `longestCharacter`, cut between code points.
qsizetype cutLength(QStringView text)
{
    const bool splitsPair = text[longestCharacter - 1].isHighSurrogate() && text[longestCharacter].isLowSurrogate();
    return splitsPair ? longestCharacter - 1 : longestCharacter;
}

/// The extent of the first `limit` characters. Text is segmented in windows, since the boundary finder analyses all of
/// what it is given; each window begins at a boundary, so it sees what the rules look back at.
Extent measure(QStringView text, qsizetype limit)
{
    constexpr qsizetype windowSize = 2 * longestCharacter;
    Extent extent;
    while (extent.characters < limit && extent.units < text.size()) {
        const QStringView rest = text.sliced(extent.units);
        QStringView window = rest.first(std::min(windowSize, rest.size()));
        if (window.size() < rest.size() && window.back().isHighSurrogate())
            window.chop(1);
        const bool isLast = window.size() == rest.size();
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, window);
        qsizetype done = 0;
        for (qsizetype next = finder.toNextBoundary(); next > 0 && extent.characters < limit;
             next = finder.toNextBoundary()) {
            // The end of a window is a boundary for the finder, not for the text.
            if (next - done > longestCharacter || (next == window.size() && !isLast))
                break;
            done = next;
            ++extent.characters;
        }
        if (done == 0) {
            done = cutLength(rest);
            ++extent.characters;
        }
        extent.units += done;
    }
    return extent;
}

bool isPlain(QByteArrayView text)
{
    return Utf8::isASCII(text) && !text.contains('\r'); // CR LF is one character
}

} // namespace

QStringView prefix(QStringView text, qsizetype count)
{
    return text.first(measure(text, count).units);
}

Prefix prefix(const Utf8Text& text, qsizetype count)
{
    return prefixOfUtf8(text.utf8(), count);
}

Prefix prefixOfUtf8(QByteArrayView utf8, qsizetype count)
{
    // One more than asked for, so that what could still belong to the last character is seen.
    const QByteArrayView plain = utf8.first(std::min(utf8.size(), count + 1));
    if (isPlain(plain))
        return {QString::fromLatin1(plain.first(std::min(plain.size(), count))), utf8.size() <= count};

    for (qsizetype windowSize = 4 * (count + 1);; windowSize *= 4) {
        const QByteArrayView window = Utf8::prefix(utf8, windowSize);
        const QString text = Utf8::toString(window);
        const QStringView found = prefix(QStringView(text), count);
        const bool isWhole = window.size() == utf8.size();
        if (isWhole || text.size() - found.size() > longestCharacter)
            return {found.toString(), isWhole && found.size() == text.size()};
    }
}

qsizetype count(QStringView text)
{
    return measure(text, std::numeric_limits<qsizetype>::max()).characters;
}

} // namespace ClipboardCore::Graphemes
