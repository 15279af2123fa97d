#include "Actions/XMLSyntax.h"

#include "Support/Utf8.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <optional>

namespace ClipboardCore::XMLSyntax {

namespace {

struct Range
{
    char32_t first = 0;
    char32_t last = 0;
};

template <size_t count>
bool isIn(const std::array<Range, count>& ranges, char32_t codePoint)
{
    return std::any_of(ranges.begin(), ranges.end(),
                       [&](Range range) { return codePoint >= range.first && codePoint <= range.last; });
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Productions 4 and 4a, ASCII.
bool isNameSign(char c, bool isFirst)
{
    return isLetter(c) || c == '_' || c == ':' || (!isFirst && (isDigit(c) || c == '-' || c == '.'));
}

/// Productions 4 and 4a, beyond ASCII.
bool isNameCharacter(char32_t codePoint, bool isFirst)
{
    constexpr std::array<Range, 12> starts{{{0xC0, 0xD6},
                                            {0xD8, 0xF6},
                                            {0xF8, 0x2FF},
                                            {0x370, 0x37D},
                                            {0x37F, 0x1FFF},
                                            {0x200C, 0x200D},
                                            {0x2070, 0x218F},
                                            {0x2C00, 0x2FEF},
                                            {0x3001, 0xD7FF},
                                            {0xF900, 0xFDCF},
                                            {0xFDF0, 0xFFFD},
                                            {0x10000, 0xEFFFF}}};
    constexpr std::array<Range, 3> others{{{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}}};
    return isIn(starts, codePoint) || (!isFirst && isIn(others, codePoint));
}

/// Production 2.
bool isCharacter(char32_t codePoint)
{
    constexpr std::array<Range, 5> characters{
        {{0x9, 0xA}, {0xD, 0xD}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}}};
    return isIn(characters, codePoint);
}

/// Reads from the beginning of a piece on. What cannot be read is an empty answer.
class Cursor
{
public:
    explicit Cursor(QByteArrayView text)
        : m_rest(text)
    {
    }

    [[nodiscard]] bool atEnd() const { return m_rest.isEmpty(); }
    bool skip(QByteArrayView text);
    bool skipBlanks();
    QByteArrayView name();
    /// What stands between quotes.
    std::optional<QByteArrayView> quoted();
    /// What is assigned to `name`, blanks before it included.
    std::optional<QByteArrayView> assigned(QByteArrayView name);
    /// Skips "=", blanks around it included.
    bool skipEquals();
    /// Skips a reference (66 and 68).
    bool skipReference(Entities entities);

private:
    QByteArrayView take(qsizetype length);
    bool skipCharacterReference();

    QByteArrayView m_rest;
};

QByteArrayView Cursor::take(qsizetype length)
{
    const QByteArrayView taken = m_rest.first(length);
    m_rest = m_rest.sliced(length);
    return taken;
}

bool Cursor::skip(QByteArrayView text)
{
    const bool found = m_rest.startsWith(text);
    if (found)
        take(text.size());
    return found;
}

bool Cursor::skipBlanks()
{
    return !take(std::find_if_not(m_rest.begin(), m_rest.end(), isBlank) - m_rest.begin()).isEmpty();
}

QByteArrayView Cursor::name()
{
    qsizetype at = 0;
    while (at < m_rest.size()) {
        if (static_cast<unsigned char>(m_rest[at]) < 0x80) {
            if (!isNameSign(m_rest[at], at == 0))
                break;
            ++at;
        } else {
            const auto codePoint = Utf8::decode(m_rest, at);
            if (!isNameCharacter(codePoint.value, at == 0))
                break;
            at += codePoint.length;
        }
    }
    return take(at);
}

std::optional<QByteArrayView> Cursor::quoted()
{
    if (m_rest.isEmpty() || (m_rest[0] != '"' && m_rest[0] != '\''))
        return std::nullopt;
    const qsizetype end = m_rest.indexOf(m_rest[0], 1);
    if (end < 0)
        return std::nullopt;
    return take(end + 1).sliced(1).chopped(1);
}

bool Cursor::skipEquals()
{
    skipBlanks();
    const bool found = skip("=");
    skipBlanks();
    return found;
}

std::optional<QByteArrayView> Cursor::assigned(QByteArrayView name)
{
    const QByteArrayView start = m_rest;
    if (skipBlanks() && skip(name) && skipEquals())
        if (const auto value = quoted())
            return value;
    m_rest = start;
    return std::nullopt;
}

bool Cursor::skipReference(Entities entities)
{
    if (!skip("&"))
        return false;
    if (skip("#"))
        return skipCharacterReference();
    const QByteArrayView entity = name();
    constexpr std::array<QByteArrayView, 5> predefined{"lt", "gt", "amp", "apos", "quot"};
    const bool isKnown = entities == Entities::any
                             ? !entity.isEmpty()
                             : std::find(predefined.begin(), predefined.end(), entity) != predefined.end();
    return isKnown && skip(";");
}

bool Cursor::skipCharacterReference()
{
    const char32_t base = skip("x") ? 16 : 10;
    char32_t codePoint = 0;
    for (; !m_rest.isEmpty() && m_rest[0] != ';'; take(1)) {
        const char lower = static_cast<char>(m_rest[0] | 0x20);
        if (!isDigit(m_rest[0]) && (base == 10 || lower < 'a' || lower > 'f'))
            return false;
        codePoint = codePoint * base + static_cast<char32_t>(isDigit(m_rest[0]) ? m_rest[0] - '0' : lower - 'a' + 10);
        if (codePoint > QChar::LastValidCodePoint)
            return false;
    }
    // No digit at all is U+0000, which is no character either.
    return isCharacter(codePoint) && skip(";");
}

bool hasGoodReferences(QByteArrayView text, Entities entities)
{
    for (qsizetype at = text.indexOf('&'); at >= 0; at = text.indexOf('&', at + 1))
        if (!Cursor(text.sliced(at)).skipReference(entities))
            return false;
    return true;
}

using Names = QVarLengthArray<QByteArrayView, 16>;

bool isRepeated(Names& names)
{
    if (names.size() < 2)
        return false;
    std::sort(names.begin(), names.end());
    return std::adjacent_find(names.begin(), names.end()) != names.end();
}

} // namespace

bool isBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

bool hasOnlyCharacters(QByteArrayView document)
{
    unsigned char refused = 0;
    for (const char c : document)
        refused |= static_cast<unsigned char>((static_cast<unsigned char>(c) < 0x20) & (c != '\n') & (c != '\t') &
                                              (c != '\r'));
    constexpr QByteArrayView beforeNoncharacters = "\xEF\xBF"; // U+FFFE and U+FFFF end with BE and BF
    for (qsizetype at = document.indexOf(beforeNoncharacters); at >= 0;
         at = document.indexOf(beforeNoncharacters, at + 3))
        refused |= static_cast<unsigned char>(static_cast<unsigned char>(document[at + 2]) >= 0xBE);
    return refused == 0;
}

bool isText(QByteArrayView text, Entities entities)
{
    return !text.contains("]]>") && hasGoodReferences(text, entities);
}

bool isComment(QByteArrayView comment)
{
    const QByteArrayView inside = comment.sliced(4).chopped(3);
    return !inside.contains("--") && !inside.endsWith('-');
}

bool isInstruction(QByteArrayView instruction)
{
    Cursor cursor(instruction.sliced(2).chopped(2));
    const QByteArrayView name = cursor.name();
    const bool isReserved = name.compare("xml", Qt::CaseInsensitive) == 0;
    return !name.isEmpty() && !isReserved && (cursor.atEnd() || cursor.skipBlanks());
}

bool isDeclaration(QByteArrayView declaration)
{
    Cursor cursor(declaration.sliced(2).chopped(2));
    const auto version = cursor.skip("xml") ? cursor.assigned("version") : std::nullopt;
    if (!version || !version->startsWith("1.") || version->size() < 3 ||
        !std::all_of(version->begin() + 2, version->end(), isDigit))
        return false;
    if (const auto encoding = cursor.assigned("encoding")) {
        const auto isSign = [](char c) { return isLetter(c) || isDigit(c) || c == '.' || c == '_' || c == '-'; };
        if (encoding->isEmpty() || !isLetter(encoding->front()) ||
            !std::all_of(encoding->begin(), encoding->end(), isSign))
            return false;
    }
    const QByteArrayView standalone = cursor.assigned("standalone").value_or("no");
    cursor.skipBlanks();
    return cursor.atEnd() && (standalone == "yes" || standalone == "no");
}

bool isOpeningTag(QByteArrayView tag, Entities entities)
{
    Cursor cursor(tag.sliced(1).chopped(tag.endsWith("/>") ? 2 : 1));
    if (cursor.name().isEmpty())
        return false;
    Names attributes;
    while (cursor.skipBlanks() && !cursor.atEnd()) {
        attributes.append(cursor.name());
        const auto value = !attributes.back().isEmpty() && cursor.skipEquals() ? cursor.quoted() : std::nullopt;
        if (!value || value->contains('<') || !hasGoodReferences(*value, entities))
            return false;
    }
    return cursor.atEnd() && !isRepeated(attributes);
}

bool isPair(QByteArrayView openTag, QByteArrayView closeTag)
{
    Cursor cursor(closeTag.sliced(2).chopped(1));
    const QByteArrayView name = cursor.name();
    cursor.skipBlanks();
    return cursor.atEnd() && name == Cursor(openTag.sliced(1)).name();
}

} // namespace ClipboardCore::XMLSyntax
