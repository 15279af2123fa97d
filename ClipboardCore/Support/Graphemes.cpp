#include "Support/Graphemes.h"

#include "Support/GraphemeClass.h"
#include "Support/Utf8.h"

#include <limits>

namespace ClipboardCore::Graphemes {

namespace {

using Class = GraphemeClass;

bool isControl(Class c)
{
    return c == Class::control || c == Class::carriageReturn || c == Class::lineFeed;
}

/// Whether a syllable of Hangul goes on (UAX #29, rules GB6 to GB8).
bool joinsHangul(Class before, Class after)
{
    switch (before) {
    case Class::hangulLead:
        return after == Class::hangulLead || after == Class::hangulVowel || after == Class::hangulOpenSyllable ||
               after == Class::hangulClosedSyllable;
    case Class::hangulVowel:
    case Class::hangulOpenSyllable:
        return after == Class::hangulVowel || after == Class::hangulTail;
    case Class::hangulTail:
    case Class::hangulClosedSyllable:
        return after == Class::hangulTail;
    default:
        return false;
    }
}

/// The rules that two neighbours decide on their own (GB3 to GB9b).
bool joinsNeighbour(Class before, Class after)
{
    if (before == Class::carriageReturn && after == Class::lineFeed)
        return true;
    if (isControl(before) || isControl(after))
        return false;
    return after == Class::extend || after == Class::joiner || after == Class::spacingMark ||
           before == Class::prepend || joinsHangul(before, after);
}

/// Walks over a text from its beginning and tells where characters begin.
class Walk
{
public:
    /// Takes the next code point and answers whether it begins a character.
    bool takeBeginning(char32_t codePoint)
    {
        const int units = QChar::requiresSurrogates(codePoint) ? 2 : 1;
        const Class next = graphemeClass(codePoint);
        const bool begins = !joins(next) || m_units + units > longestCharacter;
        m_units = begins ? units : m_units + units;
        m_endsOddFlag = next == Class::regionalIndicator && (begins || !m_endsOddFlag);
        m_isJoinedPicture = m_isPicture && next == Class::joiner;
        m_isPicture = next == Class::picture || (m_isPicture && next == Class::extend);
        m_last = next;
        return begins;
    }

private:
    [[nodiscard]] bool joins(Class next) const
    {
        return joinsNeighbour(m_last, next) || (m_isJoinedPicture && next == Class::picture) || // GB11
               (m_endsOddFlag && next == Class::regionalIndicator);                             // GB12, GB13
    }

    Class m_last = Class::control;
    qsizetype m_units = 0;          // of the character so far
    bool m_isPicture = false;       // with marks on it
    bool m_isJoinedPicture = false; // with a joiner behind those
    bool m_endsOddFlag = false;     // half a flag
};

Utf8::CodePoint decode(QByteArrayView text, qsizetype at)
{
    return Utf8::decode(text, at);
}

Utf8::CodePoint decode(QStringView text, qsizetype at)
{
    const bool isPair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
    if (isPair)
        return {QChar::surrogateToUcs4(text[at], text[at + 1]), 2};
    return {text[at].unicode(), 1};
}

/// Where the first `count` characters end.
template <typename View>
qsizetype endOf(View text, qsizetype count)
{
    Walk walk;
    qsizetype at = 0;
    while (at < text.size()) {
        const auto codePoint = decode(text, at);
        if (walk.takeBeginning(codePoint.value) && --count < 0)
            break;
        at += codePoint.length;
    }
    return at;
}

} // namespace

QStringView prefix(QStringView text, qsizetype count)
{
    return text.first(endOf(text, count));
}

Prefix prefix(const Utf8Text& text, qsizetype count)
{
    return prefixOfUtf8(text.utf8(), count);
}

Prefix prefixOfUtf8(QByteArrayView utf8, qsizetype count)
{
    const qsizetype end = endOf(utf8, count);
    return {Utf8::toString(utf8.first(end)), end == utf8.size()};
}

qsizetype count(QStringView text)
{
    return countOfUtf8(text.toUtf8());
}

qsizetype countOfUtf8(QByteArrayView utf8)
{
    Walk walk;
    qsizetype characters = 0;
    for (qsizetype at = 0; at < utf8.size();) {
        const auto codePoint = Utf8::decode(utf8, at);
        characters += walk.takeBeginning(codePoint.value) ? 1 : 0;
        at += codePoint.length;
        // Between signs of ASCII only a line end of two holds together.
        const QByteArrayView plain = utf8.sliced(at - codePoint.length);
        const qsizetype more = Utf8::asciiLength(plain) - 1;
        if (more > 0) {
            characters += more - plain.first(more + 1).count("\r\n");
            at += more;
            walk.takeBeginning(static_cast<unsigned char>(utf8[at - 1]));
        }
    }
    return characters;
}

bool standsAlone(QByteArrayView utf8, qsizetype at)
{
    // Whether an ASCII sign belongs to a neighbour depends on that neighbour alone.
    const Class sign = graphemeClass(static_cast<unsigned char>(utf8[at]));
    if (at > 0 && joinsNeighbour(graphemeClass(Utf8::decodeBefore(utf8, at).value), sign))
        return false;
    return at + 1 == utf8.size() || !joinsNeighbour(sign, graphemeClass(Utf8::decode(utf8, at + 1).value));
}

} // namespace ClipboardCore::Graphemes
