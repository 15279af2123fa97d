#include "Actions/XMLText.h"

#include "Support/Utf8.h"

#include <QXmlStreamEntityResolver>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstring>
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
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
}

/// True for what can be part of a name, and for some signs more.
bool isNameByte(char c)
{
    return std::strchr(" \t\r\n<>/=\"'&;?![]", c) == nullptr;
}

/// Cuts a document into its tokens, far enough to write them again; whether it is well-formed is for the parser to say.
/// Each byte is looked at once.
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
    qsizetype tagLength();
    [[nodiscard]] bool hasLongReference(QByteArrayView text) const;

    /// Keep the tree: what is open, and which elements have text of their own.
    bool open();
    bool close();

    QByteArrayView m_rest;
    std::vector<Token> m_tokens;
    std::vector<size_t> m_open;
    qsizetype m_comparisons = 0;
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
    return !hasLongReference(text) && append(Kind::text, text.size());
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
    if (m_rest.startsWith("<?")) {
        const auto nameEnd = std::find_if_not(m_rest.begin() + 2, m_rest.end(), isNameByte);
        return nameEnd - m_rest.begin() <= longestName && append(Kind::instruction, lengthUpTo("?>", 2));
    }
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

qsizetype Scanner::tagLength()
{
    qsizetype attributes = 0;
    qsizetype nameStart = 1;
    for (qsizetype at = 1; at < m_rest.size(); ++at) {
        const char c = m_rest[at];
        if (isNameByte(c)) {
            if (at - nameStart >= longestName)
                return 0;
            continue;
        }
        if (c == '>') {
            m_comparisons += attributes * attributes;
            return m_comparisons <= mostAttributeComparisons ? at + 1 : 0;
        }
        if (c == '"' || c == '\'') {
            const qsizetype end = m_rest.indexOf(c, at + 1);
            if (end < 0 || hasLongReference(m_rest.sliced(at, end - at)))
                return 0;
            at = end;
            ++attributes;
        }
        nameStart = at + 1;
    }
    return 0;
}

bool Scanner::hasLongReference(QByteArrayView text) const
{
    // What begins before the end of another one is shorter still.
    for (qsizetype at = text.indexOf('&'); at >= 0; at = text.indexOf('&', at)) {
        const qsizetype end = text.first(std::min(text.size(), at + longestName)).indexOf(';', at);
        if (end < 0)
            return true;
        at = end;
    }
    return false;
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

/// True when there may be entities beyond those of XML itself.
bool mayDeclareEntities(QByteArrayView documentType)
{
    return documentType.contains("<!ENTITY") || documentType.contains("SYSTEM") || documentType.contains("PUBLIC");
}

/// Lets a reference to any entity pass, with nothing in its place.
class EmptyEntities final : public QXmlStreamEntityResolver
{
public:
    QString resolveUndeclaredEntity(const QString& /*name*/) override { return u""_s; }
};

bool isWellFormed(const QString& text, bool mayHaveEntities)
{
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false); // parts of documents use prefixes that are declared elsewhere
    EmptyEntities entities;
    if (mayHaveEntities)
        reader.setEntityResolver(&entities);
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

/// True when the document is well-formed. Its document type is taken out before: with no entity declared there is none
/// to expand, and with no default attributes none to add to every element. It is looked at alone, but not when it
/// declares such things: the declarations themselves may be built to multiply.
bool isWellFormed(QByteArrayView document, const std::vector<Token>& tokens)
{
    const auto isDocumentType = [](const Token& token) { return token.kind == Kind::documentType; };
    const auto isElement = [](const Token& token) {
        return token.kind == Kind::openTag || token.kind == Kind::emptyTag;
    };
    const auto type = std::find_if(tokens.begin(), tokens.end(), isDocumentType);
    if (type == tokens.end())
        return isWellFormed(Utf8::toString(document), false);

    const auto root = std::find_if(tokens.begin(), tokens.end(), isElement);
    if (root < type || std::find_if(type + 1, tokens.end(), isDocumentType) != tokens.end())
        return false;
    const bool mayMultiply = type->bytes.contains("<!ENTITY") || type->bytes.contains("<!ATTLIST");
    if (!mayMultiply && !isWellFormed(Utf8::toString(type->bytes) + u"<x/>"_s, false))
        return false;
    const qsizetype typeStart = type->bytes.data() - document.data();
    const QByteArrayView before = document.first(typeStart);
    const QByteArrayView after = document.sliced(typeStart + type->bytes.size());
    return isWellFormed(Utf8::toString(before) + Utf8::toString(after), mayDeclareEntities(type->bytes));
}

/// Nothing when it grows beyond `limit`.
std::optional<QByteArray> written(const std::vector<Token>& tokens, qsizetype limit)
{
    constexpr qsizetype indentWidth = 2;
    QByteArray out;
    qsizetype depth = 0;
    for (size_t index = 0; index < tokens.size(); ++index) {
        const Token& token = tokens[index];
        if (token.kind == Kind::text)
            continue;
        if (token.kind == Kind::closeTag)
            --depth;
        QByteArrayView bytes = token.bytes;
        if (token.isKept) {
            const QByteArrayView last = tokens[token.partner].bytes;
            bytes = QByteArrayView(bytes.data(), last.data() + last.size());
            index = token.partner;
        } else if (token.kind == Kind::openTag) {
            ++depth;
        }
        const qsizetype indent = indentWidth * (depth - (token.kind == Kind::openTag && !token.isKept ? 1 : 0));
        if (out.size() + indent + bytes.size() >= limit)
            return std::nullopt;
        if (!out.isEmpty())
            out.append('\n');
        out.append(indent, ' ');
        out.append(bytes);
    }
    return out;
}

} // namespace

std::optional<QByteArray> formatted(QByteArrayView utf8, qsizetype limit)
{
    if (!utf8.startsWith('<'))
        return std::nullopt;
    const auto tokens = Scanner(utf8).tokens();
    if (!tokens || !isWellFormed(utf8, *tokens))
        return std::nullopt;
    return written(*tokens, limit);
}

} // namespace ClipboardCore::XMLText
