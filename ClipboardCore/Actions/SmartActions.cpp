#include "Actions/SmartActions.h"

#include "Actions/ColorMath.h"
#include "Actions/ContentDetectors.h"
#include "Actions/JSONText.h"
#include "History/CopiedFile.h"
#include "Support/FilePath.h"
#include "Support/Graphemes.h"
#include "Support/UrlHost.h"
#include "Support/Utf8.h"
#include "Support/WhiteSpace.h"

#include <QCoreApplication>
#include <QTimeZone>

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace ClipboardCore::SmartActions {

namespace {

using Kind = SmartActionEffect::Kind;

constexpr qsizetype clipLength = 30;

/// The notices, as the translation context "SmartActions".
struct Toast
{
    Q_DECLARE_TR_FUNCTIONS(SmartActions)
};

/// Words joined by one blank. Stops early once there are `enough` bytes.
Utf8Text collapseWhitespace(QByteArrayView text, qsizetype enough = std::numeric_limits<qsizetype>::max())
{
    QByteArray words;
    words.reserve(std::min(text.size(), enough));
    while (words.size() < enough) {
        text = text.sliced(WhiteSpace::leading(text));
        if (text.isEmpty())
            break;
        if (!words.isEmpty())
            words.append(' ');
        const qsizetype length = WhiteSpace::leadingWord(text);
        words.append(text.first(length));
        text = text.sliced(length);
    }
    return Utf8Text::fromValidUtf8(words);
}

/// A short, quoted, one-line form for notices.
QString clip(const Utf8Text& text, qsizetype maximum)
{
    // More than `maximum` of the longest characters, so that the cut never depends on the rest.
    const qsizetype enough = 4 * (maximum + 1) * Graphemes::longestCharacter;
    const auto shown = Graphemes::prefix(collapseWhitespace(text.utf8(), enough), maximum);
    return QCoreApplication::translate("ClipItem", "“%1”").arg(shown.text + (shown.isWhole ? QString() : u"…"_s));
}

QString swiftUIColor(const ColorMath::RGB& color)
{
    const auto component = [](int value) { return QString::number(value / 255.0, 'f', 3); };
    return u"Color(red: %1, green: %2, blue: %3)"_s.arg(component(color.r), component(color.g), component(color.b));
}

/// The letter after the backslash of an escape; 0 for what needs none.
char escapeLetter(char c)
{
    switch (c) {
    case '\\':
    case '"':
        return c;
    case '\n':
        return 'n';
    case '\t':
        return 't';
    case '\r':
        return 'r';
    default:
        return 0;
    }
}

/// A literal of the languages that look like C. Only whole characters are escaped, so a line end of two signs stays.
Utf8Text stringLiteralEscaped(QByteArrayView text)
{
    QByteArray literal;
    literal.reserve(text.size() + 2);
    literal.append('"');
    for (qsizetype at = 0; at < text.size(); ++at) {
        const char letter = escapeLetter(text[at]);
        if (letter != 0 && Graphemes::standsAlone(text, at)) {
            literal.append('\\');
            literal.append(letter);
        } else {
            literal.append(text[at]);
        }
    }
    literal.append('"');
    return Utf8Text::fromValidUtf8(literal);
}

/// A code block of Markdown (CommonMark 0.30, section 4.5).
Utf8Text fenced(QByteArrayView text)
{
    constexpr QByteArrayView open = "```\n";
    constexpr QByteArrayView close = "\n```";
    QByteArray block;
    block.reserve(open.size() + text.size() + close.size());
    block.append(open).append(text).append(close);
    return Utf8Text::fromValidUtf8(block);
}

/// A path as one word of a POSIX shell (Shell Command Language, section 2.2.2).
/// As the shell takes bytes that are no text: $'…' with escapes in octal (POSIX.1-2024, 2.2.4).
QString shellEscapes(const QByteArray& path)
{
    QString form = u"$'"_s;
    for (const char c : path) {
        const uint byte = static_cast<uchar>(c);
        if (byte >= ' ' && byte < 0x7F && c != '\'' && c != '\\')
            form += QLatin1Char(c);
        else
            form += u"\\%1"_s.arg(byte, 3, 8, QLatin1Char('0'));
    }
    return form + u'\'';
}

QString shellForm(QByteArrayView content)
{
    const QByteArray bytes = CopiedFile::path(content);
    if (bytes != content)
        return shellEscapes(bytes);
    QString path = QString::fromUtf8(content);
    const auto isPlain = [](QChar c) {
        const char16_t unit = c.unicode();
        return unit < 0x80 && (c.isLetterOrNumber() || QStringView(u"_/.+-").contains(c));
    };
    if (!path.isEmpty() && std::all_of(path.begin(), path.end(), isPlain))
        return path;
    return u'\'' + QString(path).replace(u'\'', u"'\\''"_s) + u'\'';
}

SmartActionResult copy(const Utf8Text& text, const QString& toast)
{
    return {{Kind::copy, text}, toast};
}

SmartActionResult copyMinified(const Utf8Text& text, const Utf8Text& minified)
{
    const auto count = [](const Utf8Text& counted) { return QString::number(Graphemes::countOfUtf8(counted.utf8())); };
    return copy(minified, Toast::tr("Minified · %1 → %2 chars").arg(count(text), count(minified)));
}

SmartAction decode(const QString& label, const Utf8Text& decoded)
{
    return {label, [decoded] { return copy(decoded, Toast::tr("Decoded %1").arg(clip(decoded, clipLength))); }};
}

SmartAction copyNamed(const QString& label, const Utf8Text& text)
{
    return {label, [text] { return copy(text, Toast::tr("Copied %1").arg(clip(text, clipLength))); }};
}

SmartAction copyShown(const QString& label, const QString& text)
{
    return {label, [text] { return copy(text, Toast::tr("Copied %1").arg(text)); }};
}

SmartAction qrCode(const Utf8Text& text)
{
    return {u"QR code"_s, [text] { return SmartActionResult{{Kind::copyQRCode, text}, Toast::tr("Generating QR …")}; }};
}

void appendJSON(QList<SmartAction>& list, const Utf8Text& content)
{
    // Read once for both forms.
    const auto json = ContentDetectors::jsonObject(content);
    if (!json)
        return;
    if (const auto pretty = json->pretty(ContentDetectors::resultLimit))
        list.append({u"Pretty-print JSON"_s, [pretty] { return copy(*pretty, Toast::tr("Copied pretty JSON")); }});
    list.append({u"Minify JSON"_s, [content, minified = json->minified()] { return copyMinified(content, minified); }});
}

QList<SmartAction> text(const Utf8Text& content)
{
    // So that a code can always be made.
    constexpr qsizetype longestForQRCode = 1024;

    QList<SmartAction> list;
    appendJSON(list, content);
    if (const auto decoded = ContentDetectors::base64Decoded(content))
        list.append(decode(u"Decode Base64"_s, *decoded));
    if (const auto decoded = ContentDetectors::urlDecoded(content))
        list.append(decode(u"URL-decode"_s, *decoded));
    if (const auto date = ContentDetectors::epochDate(content, QTimeZone::systemTimeZone()))
        list.append(copyShown(u"Convert to date"_s, *date));
    if (const auto payload = ContentDetectors::jwtPayload(content))
        list.append({u"Decode JWT payload"_s, [payload] { return copy(*payload, Toast::tr("Copied JWT payload")); }});
    list.append({u"Clean whitespace"_s, [content] {
                     const Utf8Text cleaned = collapseWhitespace(content.utf8());
                     return copy(cleaned, Toast::tr("Cleaned %1").arg(clip(cleaned, clipLength)));
                 }});
    if (const auto slug = ContentDetectors::slug(content))
        list.append(copyNamed(u"Slugify"_s, *slug));
    if (content.byteCount() <= longestForQRCode)
        list.append(qrCode(content));
    return list;
}

/// A link is copied with the end of its line as often as not, which is no part of where it leads.
Utf8Text trimmed(const Utf8Text& text)
{
    const QByteArrayView kept = WhiteSpace::trimmed(text.utf8());
    return kept.size() == text.byteCount() ? text : Utf8Text::fromValidUtf8(kept.toByteArray());
}

QList<SmartAction> link(const Utf8Text& copied)
{
    const Utf8Text content = trimmed(copied);
    const auto host = urlHost(content.utf8());
    const Utf8Text domain = host ? Utf8Text(*host) : content;

    QList<SmartAction> list;
    if (const auto stripped = ContentDetectors::strippedTrackers(content))
        list.append(
            {u"Strip trackers"_s, [stripped] { return copy(*stripped, Toast::tr("Removed tracking params")); }});
    list.append(
        {u"Open link"_s, [content, domain] {
             return SmartActionResult{{Kind::openURL, content}, Toast::tr("Opening %1 …").arg(domain.toString())};
         }});
    list.append({u"Copy as Markdown"_s, [content] {
                     return SmartActionResult{{Kind::copyMarkdownLink, content}, Toast::tr("Fetching title …")};
                 }});
    list.append({u"Copy domain"_s, [domain] { return copy(domain, Toast::tr("Copied %1").arg(domain.toString())); }});
    list.append(qrCode(content));
    return list;
}

QList<SmartAction> image(const Utf8Text& content)
{
    const QString name = Utf8::toString(FilePath::lastComponent(content.utf8()));
    return {
        {u"Copy text (OCR)"_s,
         [content] {
             return SmartActionResult{{Kind::recognizeText, content}, Toast::tr("Reading text …")};
         }},
        {u"Save to Desktop"_s,
         [content, name] {
             return SmartActionResult{{Kind::copyFileToDesktop, content},
                                      Toast::tr("Saved %1 to Desktop").arg(clip(name, clipLength))};
         }},
        copyNamed(u"Copy filename"_s, name),
    };
}

QList<SmartAction> color(const Utf8Text& content)
{
    const auto rgb = ColorMath::colorOf(content).value_or(ColorMath::RGB());
    const auto hsl = ColorMath::rgbToHSL(rgb.r, rgb.g, rgb.b);
    const auto number = [](int value) { return QString::number(value); };
    return {
        copyShown(u"Copy RGB"_s, u"rgb(%1, %2, %3)"_s.arg(number(rgb.r), number(rgb.g), number(rgb.b))),
        copyShown(u"Copy HSL"_s, u"hsl(%1, %2%, %3%)"_s.arg(number(hsl.h), number(hsl.s), number(hsl.l))),
        {u"Copy SwiftUI Color"_s, [rgb] { return copy(swiftUIColor(rgb), Toast::tr("Copied Color literal")); }},
    };
}

QList<SmartAction> code(const Utf8Text& content)
{
    auto formatted = ContentDetectors::prettyJSON(content);
    if (!formatted)
        formatted = ContentDetectors::formattedXML(content);

    QList<SmartAction> list;
    if (formatted)
        list.append({u"Format"_s, [formatted] { return copy(*formatted, Toast::tr("Formatted · copied")); }});
    list.append({u"Copy fenced code"_s,
                 [content] { return copy(fenced(content.utf8()), Toast::tr("Copied fenced code block")); }});
    list.append({u"Minify"_s, [content] { return copyMinified(content, collapseWhitespace(content.utf8())); }});
    list.append({u"Escape as string literal"_s, [content] {
                     return copy(stringLiteralEscaped(content.utf8()), Toast::tr("Copied as string literal"));
                 }});
    return list;
}

QList<SmartAction> file(const Utf8Text& content)
{
    return {
        {u"Copy path"_s, [content] { return copy(content, Toast::tr("Copied path")); }},
        {u"Copy shell-escaped path"_s,
         [content] { return copy(shellForm(content.utf8()), Toast::tr("Copied shell-safe path")); }},
        copyNamed(u"Copy filename"_s, CopiedFile::shownName(content.utf8())),
        {u"Reveal in Finder"_s,
         [content] {
             return SmartActionResult{{Kind::revealInFinder, content}, Toast::tr("Revealing in Finder …")};
         }},
    };
}

} // namespace

QList<SmartAction> actions(const ClipItem& item)
{
    switch (item.type) {
    case ClipType::text:
        return text(item.content);
    case ClipType::link:
        return link(item.content);
    case ClipType::image:
        return image(item.content);
    case ClipType::color:
        return color(item.content);
    case ClipType::code:
        return code(item.content);
    case ClipType::file:
        return file(item.content);
    }
    Q_UNREACHABLE();
}

} // namespace ClipboardCore::SmartActions
