#include "History/TypeDetector.h"

#include "Support/Graphemes.h"
#include "Support/UrlHost.h"
#include "Support/Utf8.h"
#include "Support/WhiteSpace.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace ClipboardCore::TypeDetector {

namespace {

constexpr int codeThreshold = 2;

const QSet<QStringView>& keywords()
{
    static const QSet<QStringView> words{u"func",   u"function", u"fn",     u"def",     u"const",
                                         u"let",    u"var",      u"return", u"import",  u"class",
                                         u"struct", u"enum",     u"public", u"private", u"static"};
    return words;
}

/// "#" and 3, 6 or 8 hexadecimal digits.
bool isColor(QByteArrayView text)
{
    const auto isHexDigit = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    };
    const bool hasLength = text.size() == 4 || text.size() == 7 || text.size() == 9;
    return hasLength && text.front() == '#' && std::all_of(text.begin() + 1, text.end(), isHexDigit);
}

bool isLink(QByteArrayView text)
{
    if (text.startsWith("http://") || text.startsWith("https://"))
        return urlHost(text).has_value() && !WhiteSpace::isIn(text);
    return text.startsWith("www.") && text.sliced(4).contains('.') && !WhiteSpace::isIn(text);
}

char32_t codePointAt(QStringView text, qsizetype at)
{
    const QChar unit = text[at];
    if (unit.isHighSurrogate() && at + 1 < text.size())
        return QChar::surrogateToUcs4(unit, text[at + 1]);
    return unit.unicode();
}

/// True when one of the words, maximal runs of letters, is a keyword. A mark belongs to the letter before it.
bool hasKeyword(QStringView sample)
{
    qsizetype wordStart = 0;
    for (qsizetype at = 0; at < sample.size();) {
        const char32_t codePoint = codePointAt(sample, at);
        const qsizetype next = at + (QChar::requiresSurrogates(codePoint) ? 2 : 1);
        if (!QChar::isLetter(codePoint) && !(QChar::isMark(codePoint) && at > wordStart)) {
            if (keywords().contains(sample.sliced(wordStart, at - wordStart)))
                return true;
            wordStart = next;
        }
        at = next;
    }
    return keywords().contains(sample.sliced(wordStart));
}

/// True when `sign` occurs as whole characters: not with a mark on its last one.
bool hasSign(QStringView sample, QStringView sign)
{
    for (qsizetype at = sample.indexOf(sign); at >= 0; at = sample.indexOf(sign, at + 1)) {
        const qsizetype end = at + sign.size();
        if (end == sample.size() || !sample[end].isMark())
            return true;
    }
    return false;
}

bool endsLikeCode(QStringView sample)
{
    qsizetype end = sample.size();
    while (end > 0 && sample[end - 1].isSpace())
        --end;
    const QStringView trimmed = sample.first(end);
    return trimmed.endsWith(u';') || trimmed.endsWith(u'{') || hasSign(sample, u";\n");
}

bool looksLikeCode(QByteArrayView text)
{
    if (text.isEmpty())
        return false;
    const QString sample = Graphemes::prefixOfUtf8(text, sampleLimit).text;
    const int score = int(hasKeyword(sample)) + int(hasSign(sample, u"=>") || hasSign(sample, u"->")) +
                      int(hasSign(sample, u"{") && hasSign(sample, u"}")) + int(endsLikeCode(sample));
    return score >= codeThreshold;
}

} // namespace

ClipType classify(const Utf8Text& text)
{
    const QByteArrayView trimmed = WhiteSpace::trimmed(text.utf8());
    if (isColor(trimmed))
        return ClipType::color;
    if (isLink(trimmed))
        return ClipType::link;
    return looksLikeCode(trimmed) ? ClipType::code : ClipType::text;
}

bool looksLikeCode(const Utf8Text& text)
{
    return looksLikeCode(QByteArrayView(text.utf8()));
}

} // namespace ClipboardCore::TypeDetector
