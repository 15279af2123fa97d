#include "Actions/XMLText.h"

#include "Actions/XMLSyntax.h"
#include "Support/Utf8.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace ClipboardCore::XMLText {

namespace {

enum class Kind { text, comment, cdata, instruction, documentType, openTag, closeTag, emptyTag };

struct Token
{
    Kind kind = Kind::text;
    QByteArrayView bytes;
    size_t partner = 0;  // of an open tag: its close tag
    bool isKept = false; // of an open tag: the element is written as it stands
};

bool isBlank(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return XMLSyntax::isBlank(c); });
}

/// Cuts a document into its tokens, far enough to write them again; whether they are well-formed is not its question.
class Scanner
{
public:
    explicit Scanner(QByteArrayView document)
        : m_rest(document)
    {
    }

    /// Nothing when a token has no end or a bound is passed.
    [[nodiscard]] std::optional<std::vector<Token>> tokens();

private:
    bool appendNext();
    bool appendMarkup();
    bool append(Kind kind, qsizetype length);
    /// Each answers with a length, 0 when there is no end.
    [[nodiscard]] qsizetype lengthUpTo(QByteArrayView terminator, qsizetype from) const;
    [[nodiscard]] qsizetype documentTypeLength() const;
    [[nodiscard]] qsizetype tagLength() const;

    /// Keep the tree: what is open, and which elements have text of their own.
    bool open();
    bool close();

    QByteArrayView m_rest;
    std::vector<Token> m_tokens;
    std::vector<size_t> m_open;
};

std::optional<std::vector<Token>> Scanner::tokens()
{
    while (!m_rest.isEmpty())
        if (!appendNext())
            return std::nullopt;
    return m_open.empty() ? std::optional(std::move(m_tokens)) : std::nullopt;
}

bool Scanner::append(Kind kind, qsizetype length)
{
    if (length == 0)
        return false;
    m_tokens.push_back({kind, m_rest.first(length)});
    m_rest = m_rest.sliced(length);
    return true;
}

bool Scanner::appendNext()
{
    if (m_rest.startsWith('<'))
        return appendMarkup();
    const qsizetype markup = m_rest.indexOf('<');
    const QByteArrayView text = m_rest.first(markup < 0 ? m_rest.size() : markup);
    if (!m_open.empty() && !isBlank(text))
        m_tokens[m_open.back()].isKept = true;
    return append(Kind::text, text.size());
}

bool Scanner::appendMarkup()
{
    if (m_rest.startsWith("<!--"))
        return append(Kind::comment, lengthUpTo("-->", 4));
    if (m_rest.startsWith("<![CDATA[")) {
        if (!m_open.empty())
            m_tokens[m_open.back()].isKept = true;
        return append(Kind::cdata, lengthUpTo("]]>", 9));
    }
    if (m_rest.startsWith("<?"))
        return append(Kind::instruction, lengthUpTo("?>", 2));
    if (m_rest.startsWith("<!"))
        return m_rest.startsWith("<!DOCTYPE") && append(Kind::documentType, documentTypeLength());
    if (m_rest.startsWith("</"))
        return append(Kind::closeTag, tagLength()) && close();

    if (!append(Kind::openTag, tagLength()))
        return false;
    if (!m_tokens.back().bytes.endsWith("/>"))
        return open();
    m_tokens.back().kind = Kind::emptyTag;
    return true;
}

qsizetype Scanner::lengthUpTo(QByteArrayView terminator, qsizetype from) const
{
    const qsizetype at = m_rest.indexOf(terminator, from);
    return at < 0 ? 0 : at + terminator.size();
}

qsizetype Scanner::documentTypeLength() const
{
    qsizetype depth = 0;
    for (qsizetype at = 0; at < m_rest.size(); ++at) {
        const char c = m_rest[at];
        qsizetype end = at + 1;
        if (c == '"' || c == '\'')
            end = m_rest.indexOf(c, at + 1) + 1;
        else if (m_rest.sliced(at).startsWith("<!--"))
            end = lengthUpTo("-->", at + 4);
        else if (m_rest.sliced(at).startsWith("<?"))
            end = lengthUpTo("?>", at + 2);
        else if (c == '<')
            ++depth;
        else if (c == '>' && --depth == 0)
            return at + 1;
        if (end == 0)
            return 0;
        at = end - 1;
    }
    return 0;
}

qsizetype Scanner::tagLength() const
{
    for (qsizetype at = 1; at < m_rest.size(); ++at) {
        const char c = m_rest[at];
        if (c == '>')
            return at + 1;
        if (c == '"' || c == '\'') {
            at = m_rest.indexOf(c, at + 1);
            if (at < 0)
                return 0;
        }
    }
    return 0;
}

bool Scanner::open()
{
    constexpr QByteArrayView preserve = "xml:space";
    Token& token = m_tokens.back();
    token.isKept = token.bytes.contains(preserve) && token.bytes.contains("preserve");
    m_open.push_back(m_tokens.size() - 1);
    return qsizetype(m_open.size()) <= deepestNesting;
}

bool Scanner::close()
{
    if (m_open.empty())
        return false;
    const size_t tag = m_open.back();
    const size_t partner = m_tokens.size() - 1;
    m_open.pop_back();
    m_tokens[tag].partner = partner;
    // White space alone is content where there is nothing that it could set apart.
    const auto isText = [](const Token& token) { return token.kind == Kind::text; };
    if (partner - tag <= 2 && std::all_of(&m_tokens[tag + 1], &m_tokens[partner], isText))
        m_tokens[tag].isKept = true;
    return true;
}

/// True for what can be part of a name, and for some signs more.
bool isNameByte(char c)
{
    return std::strchr(" \t\r\n<>/=\"'&;?![]", c) == nullptr;
}

bool hasLongName(QByteArrayView text)
{
    const auto isLong = [length = qsizetype(0)](char c) mutable {
        length = isNameByte(c) ? length + 1 : 0;
        return length > longestName;
    };
    return std::any_of(text.begin(), text.end(), isLong);
}

/// Asks Qt's parser, which alone knows the inside of a document type. It is not asked about one that declares entities
/// or default attributes: such declarations may be built to multiply.
bool isDocumentType(QByteArrayView type)
{
    if (type.contains("<!ENTITY") || type.contains("<!ATTLIST"))
        return true;
    if (hasLongName(type))
        return false;
    QXmlStreamReader reader(Utf8::toString(type) + u"<x/>"_s);
    reader.setNamespaceProcessing(false); // parts of documents use prefixes that are declared elsewhere
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

/// Goes through the tokens of a document and sees that each is well-formed and stands where it may. Entities are never
/// expanded.
class Judge
{
public:
    explicit Judge(const std::vector<Token>& tokens)
        : m_tokens(tokens)
    {
    }

    [[nodiscard]] bool isWellFormed();

private:
    bool accepts(size_t index);
    bool acceptsDocumentType(QByteArrayView type);
    bool acceptsElement(const Token& token);

    const std::vector<Token>& m_tokens;
    XMLSyntax::Entities m_entities = XMLSyntax::Entities::predefined;
    qsizetype m_depth = 0;
    bool m_hasType = false;
    bool m_hasRoot = false;
};

bool Judge::isWellFormed()
{
    for (size_t index = 0; index < m_tokens.size(); ++index)
        if (!accepts(index))
            return false;
    return m_hasRoot;
}

bool Judge::accepts(size_t index)
{
    const Token& token = m_tokens[index];
    switch (token.kind) {
    case Kind::text:
        return m_depth > 0 ? XMLSyntax::isText(token.bytes, m_entities) : isBlank(token.bytes);
    case Kind::comment:
        return XMLSyntax::isComment(token.bytes);
    case Kind::cdata:
        return m_depth > 0;
    case Kind::instruction:
        return XMLSyntax::isInstruction(token.bytes) || (index == 0 && XMLSyntax::isDeclaration(token.bytes));
    case Kind::documentType:
        return acceptsDocumentType(token.bytes);
    case Kind::openTag:
    case Kind::emptyTag:
        return acceptsElement(token);
    case Kind::closeTag:
        --m_depth;
        return true;
    }
    Q_UNREACHABLE();
}

bool Judge::acceptsDocumentType(QByteArrayView type)
{
    if (m_hasType || m_hasRoot)
        return false;
    m_hasType = true;
    if (type.contains("<!ENTITY") || type.contains("SYSTEM") || type.contains("PUBLIC"))
        m_entities = XMLSyntax::Entities::any;
    return isDocumentType(type);
}

bool Judge::acceptsElement(const Token& token)
{
    if (m_depth == 0 && std::exchange(m_hasRoot, true))
        return false;
    if (token.kind == Kind::openTag) {
        ++m_depth;
        if (!XMLSyntax::isPair(token.bytes, m_tokens[token.partner].bytes))
            return false;
    }
    return XMLSyntax::isOpeningTag(token.bytes, m_entities);
}

/// Calls `line` with the depth and the bytes of each line of the formatted document.
template <typename Line>
void forEachLine(const std::vector<Token>& tokens, Line line)
{
    qsizetype depth = 0;
    for (size_t index = 0; index < tokens.size(); ++index) {
        const Token& token = tokens[index];
        if (token.kind == Kind::text)
            continue;
        if (token.isKept) {
            const QByteArrayView last = tokens[token.partner].bytes;
            line(depth, QByteArrayView(token.bytes.data(), last.data() + last.size()));
            index = token.partner;
            continue;
        }
        if (token.kind == Kind::closeTag)
            --depth;
        line(depth, token.bytes);
        if (token.kind == Kind::openTag)
            ++depth;
    }
}

/// Nothing when it is larger than `limit`, which is found out before anything is written.
std::optional<QByteArray> written(const std::vector<Token>& tokens, qsizetype limit)
{
    constexpr qsizetype indentWidth = 2;
    qsizetype size = 0;
    forEachLine(tokens, [&](qsizetype depth, QByteArrayView bytes) { size += indentWidth * depth + bytes.size() + 1; });
    if (size > limit)
        return std::nullopt;
    QByteArray out;
    out.reserve(size);
    forEachLine(tokens, [&](qsizetype depth, QByteArrayView bytes) {
        if (!out.isEmpty())
            out.append('\n');
        out.append(indentWidth * depth, ' ');
        out.append(bytes);
    });
    return out;
}

} // namespace

std::optional<QByteArray> formatted(QByteArrayView utf8, qsizetype limit)
{
    if (!utf8.startsWith('<'))
        return std::nullopt;
    const auto tokens = Scanner(utf8).tokens();
    if (!tokens || !XMLSyntax::hasOnlyCharacters(utf8) || !Judge(*tokens).isWellFormed())
        return std::nullopt;
    return written(*tokens, limit);
}

} // namespace ClipboardCore::XMLText
