#include "HtmlHead.h"
#include "PageCharset.h"
#include "TitleText.h"

#include <QList>

#include <libxml/HTMLparser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <cctype>
#include <memory>

namespace Clipboard {

namespace {

/// Real pages stay below a hundred; the parser's work on an end tag grows with the number of open elements.
constexpr int maxOpenElements = 512;

QByteArray bytesOf(const xmlChar* text)
{
    return {reinterpret_cast<const char*>(text)};
}

/// One start tag; names are lower case.
class Tag final
{
public:
    Tag(const xmlChar* name, const xmlChar** attributes)
        : m_name(bytesOf(name))
        , m_attributes(attributes)
    {
    }

    [[nodiscard]] const QByteArray& name() const { return m_name; }

    /// The value as UTF-8 with its entities decoded; empty when there is none.
    [[nodiscard]] QByteArray attribute(const char* name) const
    {
        for (const xmlChar** at = m_attributes; at && at[0]; at += 2) {
            if (bytesOf(at[0]) == name)
                return bytesOf(at[1]);
        }
        return {};
    }

private:
    QByteArray m_name;
    const xmlChar** m_attributes;
};

/// Whether the parser knows the character that `digits` after "&#" stand for.
bool isNumberOfCharacter(QByteArrayView digits)
{
    const bool isHexadecimal = digits.startsWith('x') || digits.startsWith('X');
    if (isHexadecimal)
        digits = digits.sliced(1);
    const auto end = std::ranges::find_if_not(
        digits, [&](char c) { return isHexadecimal ? std::isxdigit(uchar(c)) != 0 : std::isdigit(uchar(c)) != 0; });
    bool isNumber = false;
    const uint number = digits.first(end - digits.begin()).toUInt(&isNumber, isHexadecimal ? 16 : 10);
    return isNumber && IS_CHAR(number);
}

/// The page with "&amp;" for every ampersand that seems to begin a numbered entity and does not, as in "Q&#A": the
/// parser ends an attribute's value there.
QByteArray withPlainAmpersands(const QByteArray& page)
{
    QByteArray result;
    qsizetype done = 0;
    for (qsizetype at = page.indexOf("&#"); at >= 0; at = page.indexOf("&#", at + 1)) {
        if (isNumberOfCharacter(QByteArrayView(page).sliced(at + 2)))
            continue;
        result += page.sliced(done, at - done) + "&amp;";
        done = at + 1;
    }
    return result + page.sliced(done);
}

/// Walks through the elements of a page in their order, without building a tree.
class HtmlWalk
{
public:
    virtual ~HtmlWalk() = default;

    void walk(const QString& page)
    {
        const QByteArray utf8 = prepared(page);
        m_context.reset(htmlCreateMemoryParserCtxt(utf8.constData(), int(utf8.size())));
        if (!m_context)
            return;
        htmlSAXHandler events{};
        events.startElement = [](void* self, const xmlChar* name, const xmlChar** attributes) {
            static_cast<HtmlWalk*>(self)->open(Tag(name, attributes));
        };
        events.endElement = [](void* self, const xmlChar* name) { static_cast<HtmlWalk*>(self)->close(bytesOf(name)); };
        *m_context->sax = events;
        m_context->userData = this;
        // What the page says of its encoding was true of its bytes.
        htmlCtxtUseOptions(m_context.get(), HTML_PARSE_NONET | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING |
                                                HTML_PARSE_RECOVER | HTML_PARSE_IGNORE_ENC);
        xmlSwitchEncoding(m_context.get(), XML_CHAR_ENCODING_UTF8);
        htmlParseDocument(m_context.get());
        m_context.reset();
    }

protected:
    /// Neither is told of what the page is cut off in.
    virtual void started(const Tag& tag) = 0;
    virtual void ended(const QByteArray& /*name*/) {}

    void stop() { xmlStopParser(m_context.get()); }

    /// The source that follows the start tag that was just reported, from somewhere before that tag's last character.
    [[nodiscard]] QByteArray rest() const
    {
        const xmlParserInput* input = m_context->input;
        return {reinterpret_cast<const char*>(input->cur), qsizetype(input->end - input->cur)};
    }

private:
    struct FreeContext
    {
        void operator()(htmlParserCtxt* context) const { htmlFreeParserCtxt(context); }
    };

    /// The page as the parser copes with it.
    [[nodiscard]] static QByteArray prepared(QString page)
    {
        // It takes a zero for the end of the page,
        page.replace(QChar(u'\0'), QChar(QChar::ReplacementCharacter));
        // more than a thousand blanks for the beginning of the body,
        const QByteArray utf8 = withPlainAmpersands(page.toUtf8().simplified());
        // and closes what is open at the end. A comment without an end keeps what really stands there from being last.
        return utf8 + "<!--";
    }

    /// Whether the element is opened or closed only because the page has come to its end, perhaps within the tag.
    [[nodiscard]] bool isCutOff() const { return m_context->input->cur >= m_context->input->end; }

    void open(const Tag& tag)
    {
        if (++m_openElements > maxOpenElements)
            stop();
        else if (!isCutOff())
            started(tag);
    }
    void close(const QByteArray& name)
    {
        --m_openElements;
        if (!isCutOff())
            ended(name);
    }

    std::unique_ptr<htmlParserCtxt, FreeContext> m_context;
    int m_openElements = 0;
};

bool startsBody(const QByteArray& name)
{
    return name == "body" || name == "frameset";
}

/// The text that a source with entities stands for.
class AttributeText final : public HtmlWalk
{
public:
    [[nodiscard]] static std::optional<QString> tidied(QByteArray source)
    {
        AttributeText walk;
        walk.HtmlWalk::walk(QString::fromUtf8("<meta content=\"" + source.replace('"', "&quot;") + "\">"));
        return tidiedTitle(QString::fromUtf8(walk.m_text));
    }

private:
    void started(const Tag& tag) override { m_text += tag.attribute("content"); }

    QByteArray m_text;
};

/// What stands in the title element whose start tag ends within `source`; nothing when the element does not end. Markup
/// in it is text, as in every browser: "List<int>" is a title.
std::optional<QByteArray> titleSource(const QByteArray& source)
{
    const qsizetype start = source.indexOf('>') + 1;
    const QByteArray text = source.mid(start);
    const QByteArray lower = text.toLower();
    const QByteArray endTag = "</title";
    for (qsizetype at = lower.indexOf(endTag); at >= 0; at = lower.indexOf(endTag, at + 1)) {
        const QByteArray follows = lower.mid(at + endTag.size(), 1);
        if (!follows.isEmpty() && QByteArray("> /\t\n\r\f").contains(follows))
            return text.first(at);
    }
    return {};
}

class TitleSearch final : public HtmlWalk
{
public:
    [[nodiscard]] const HtmlHead& head() const { return m_head; }

private:
    /// What these hold is not about the page: a picture's or a formula's own title, a text of markup.
    [[nodiscard]] static bool isApart(const QByteArray& name)
    {
        return name == "svg" || name == "math" || name == "template" || name == "title";
    }

    void started(const Tag& tag) override
    {
        if (m_apart == 0) {
            m_headIsOver |= startsBody(tag.name());
            if (tag.name() == "title") {
                const auto source = titleSource(rest());
                if (!source)
                    return stop(); // all that follows is its text
                if (!m_head.title)
                    m_head.title = AttributeText::tidied(*source);
            }
            if (tag.name() == "meta" && !m_head.ogTitle && namesOgTitle(tag))
                m_head.ogTitle = tidiedTitle(QString::fromUtf8(tag.attribute("content")));
        }
        if (isApart(tag.name()))
            ++m_apart;
        settle();
    }

    void ended(const QByteArray& name) override
    {
        if (isApart(name))
            --m_apart;
        m_headIsOver |= name == "head";
        settle();
    }

    /// Open Graph calls it "property", a list of names; many pages write "name".
    [[nodiscard]] static bool namesOgTitle(const Tag& tag)
    {
        const QByteArray names = tag.attribute("property") + ' ' + tag.attribute("name");
        return names.toLower().simplified().split(' ').contains("og:title");
    }

    void settle()
    {
        m_head.settled = m_headIsOver && (m_head.ogTitle || m_head.title);
        if (m_head.settled)
            stop();
    }

    HtmlHead m_head;
    int m_apart = 0;
    bool m_headIsOver = false;
};

class EncodingSearch final : public HtmlWalk
{
public:
    [[nodiscard]] const std::optional<QByteArray>& encoding() const { return m_encoding; }

private:
    void started(const Tag& tag) override
    {
        if (tag.name() == "meta") {
            m_encoding = encodingForLabel(tag.attribute("charset"));
            if (!m_encoding && tag.attribute("http-equiv").trimmed().toLower() == "content-type")
                m_encoding = encodingForLabel(charsetParameter(tag.attribute("content")).value_or(QByteArray()));
        }
        if (m_encoding || startsBody(tag.name()))
            stop();
    }

    void ended(const QByteArray& name) override
    {
        if (name == "head")
            stop();
    }

    std::optional<QByteArray> m_encoding;
};

} // namespace

HtmlHead readHtmlHead(const QString& page)
{
    TitleSearch search;
    search.walk(page);
    return search.head();
}

std::optional<QByteArray> declaredEncoding(const QByteArray& page)
{
    EncodingSearch search;
    search.walk(QString::fromLatin1(page));
    // A page whose markup could be read this way is not in UTF-16, whatever it says.
    if (search.encoding() && search.encoding()->startsWith("UTF-16"))
        return "UTF-8";
    return search.encoding();
}

} // namespace Clipboard
