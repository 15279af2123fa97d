#include "Support/Graphemes.h"

#include "Support/Utf8.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <limits>

namespace ClipboardCore::Graphemes {

namespace {

constexpr char32_t joiner = 0x200D;

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

char32_t codePointBefore(QStringView text, qsizetype end)
{
    const bool isPair = end >= 2 && text[end - 1].isLowSurrogate() && text[end - 2].isHighSurrogate();
    return isPair ? QChar::surrogateToUcs4(text[end - 2], text[end - 1]) : text[end - 1].unicode();
}

bool isRegionalIndicator(char32_t codePoint)
{
    return codePoint >= 0x1F1E6 && codePoint <= 0x1F1FF;
}

/// The number of regional indicators, two of which are a flag, that end at `end`.
qsizetype regionalIndicatorsBefore(QStringView text, qsizetype end)
{
    qsizetype count = 0;
    while (end >= 2 && isRegionalIndicator(codePointBefore(text, end))) {
        end -= 2;
        ++count;
    }
    return count;
}

bool isSkinTone(char32_t codePoint)
{
    return codePoint >= 0x1F3FB && codePoint <= 0x1F3FF;
}

/// True when a picture, with the marks on it, ends at `end`: one that a joiner can tie to the next.
bool isPictureBefore(QStringView text, qsizetype end)
{
    while (end > 0) {
        const char32_t codePoint = codePointBefore(text, end);
        const auto category = QChar::category(codePoint);
        if (category != QChar::Mark_NonSpacing && !isSkinTone(codePoint))
            return category == QChar::Symbol_Other;
        end -= QChar::requiresSurrogates(codePoint) ? 2 : 1;
    }
    return false;
}

/// True for what belongs to the character before it, whatever that is but a control character.
bool isExtending(char32_t codePoint)
{
    const auto category = QChar::category(codePoint);
    // From Myanmar on, some spacing marks do stand alone.
    const bool isMark = category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing ||
                        (category == QChar::Mark_SpacingCombining && codePoint < 0x1000);
    return isMark || codePoint == joiner || isSkinTone(codePoint);
}

/// True when the boundary that the finder sees at `at`, which is inside the text, is none. From a letter of an Indic
/// script up to the next letter of another one, Qt 6.4 takes every code unit for a character.
bool isFalseBoundary(QStringView text, qsizetype at)
{
    if (text[at].isLowSurrogate() && text[at - 1].isHighSurrogate())
        return true;
    if (text[at] == u'\n' && text[at - 1] == u'\r')
        return true;
    const bool isPair = text[at].isHighSurrogate() && at + 1 < text.size();
    const char32_t next = isPair ? QChar::surrogateToUcs4(text[at], text[at + 1]) : text[at].unicode();
    const char32_t last = codePointBefore(text, at);
    if (isRegionalIndicator(next))
        return regionalIndicatorsBefore(text, at) % 2 != 0;
    if (isExtending(next)) {
        const auto before = QChar::category(last);
        return before != QChar::Other_Control && before != QChar::Separator_Line &&
               before != QChar::Separator_Paragraph;
    }
    return last == joiner && QChar::category(next) == QChar::Symbol_Other && isPictureBefore(text, at - 1);
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
            if (next < window.size() && isFalseBoundary(window, next))
                continue;
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

bool isCRLF(QByteArrayView text, qsizetype at)
{
    return text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
}

/// The end of the stretch that begins at `start`, where a character ends: between two signs of ASCII, or at the end.
qsizetype stretchEnd(QByteArrayView text, qsizetype start)
{
    const auto isASCII = [text](qsizetype at) { return static_cast<unsigned char>(text[at]) < 0x80; };
    qsizetype end = start + 1;
    while (end < text.size() && !(isASCII(end - 1) && isASCII(end) && !isCRLF(text, end - 1)))
        ++end;
    return end;
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

qsizetype countOfUtf8(QByteArrayView utf8)
{
    qsizetype characters = 0;
    for (qsizetype at = 0; at < utf8.size();) {
        // The last sign may carry a mark, or be the first half of a line end.
        const qsizetype plainEnd = at + std::max<qsizetype>(Utf8::asciiLength(utf8.sliced(at)) - 1, 0);
        const QByteArrayView plain = utf8.sliced(at, plainEnd - at);
        characters += plain.size() - plain.count("\r\n");
        at = plainEnd;
        if (at > 0 && isCRLF(utf8, at - 1)) {
            // Counted with its carriage return.
            ++at;
            continue;
        }
        const qsizetype end = stretchEnd(utf8, at);
        characters += count(QStringView(Utf8::toString(utf8.sliced(at, end - at))));
        at = end;
    }
    return characters;
}

bool standsAlone(QByteArrayView utf8, qsizetype at)
{
    if (isCRLF(utf8, at) || (at > 0 && isCRLF(utf8, at - 1)))
        return false;
    // Whether an ASCII sign belongs to a neighbour depends on that neighbour alone.
    const QByteArrayView before = at > 0 ? utf8.first(at).last(Utf8::decodeBefore(utf8, at).length) : QByteArrayView();
    const QByteArrayView rest = utf8.sliced(at + 1);
    const QByteArrayView after = rest.isEmpty() ? rest : rest.first(Utf8::decode(rest, 0).length);
    if (before.size() <= 1 && after.size() <= 1)
        return true;
    // The finder would say the same, a hundred times slower.
    const bool isControl = utf8[at] < ' ' || utf8[at] == '\x7F';
    if (!after.isEmpty() && !isControl && isExtending(Utf8::decode(after, 0).value))
        return false;
    const QString around = Utf8::toString(before) + QLatin1Char(utf8[at]) + Utf8::toString(after);
    const qsizetype start = Utf8::toString(before).size();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, around);
    finder.setPosition(start);
    const bool startsHere = finder.isAtBoundary();
    finder.setPosition(start + 1);
    return startsHere && finder.isAtBoundary();
}

} // namespace ClipboardCore::Graphemes
