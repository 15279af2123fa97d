#include "Actions/ContentDetectors.h"

#include "Actions/JSONText.h"
#include "Actions/XMLText.h"
#include "Support/Graphemes.h"
#include "Support/PercentEscapes.h"
#include "Support/TextFolding.h"
#include "Support/Utf8.h"
#include "Support/WhiteSpace.h"

#include <QDateTime>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace ClipboardCore::ContentDetectors {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isBase64Sign(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '+' || c == '/';
}

bool isTooLarge(const Utf8Text& text)
{
    return text.byteCount() > sizeLimit;
}

/// The bytes of a padded Base64 text of the standard alphabet.
std::optional<QByteArray> base64Bytes(QByteArrayView text)
{
    const auto padding = std::find_if_not(text.begin(), text.end(), isBase64Sign);
    const bool isPadded =
        text.end() - padding <= 2 && std::all_of(padding, text.end(), [](char c) { return c == '='; });
    if (text.size() % 4 != 0 || padding == text.begin() || !isPadded)
        return std::nullopt;
    const auto result = QByteArray::fromBase64Encoding(text.toByteArray(), QByteArray::AbortOnBase64DecodingErrors);
    return result ? std::optional(*result) : std::nullopt;
}

} // namespace

std::optional<JSONText> jsonObject(const Utf8Text& text)
{
    if (isTooLarge(text))
        return std::nullopt;
    const QByteArrayView trimmed = WhiteSpace::trimmed(text.utf8());
    if (!trimmed.startsWith('{') && !trimmed.startsWith('['))
        return std::nullopt;
    return JSONText::read(trimmed);
}

std::optional<Utf8Text> prettyJSON(const Utf8Text& text)
{
    const auto json = jsonObject(text);
    return json ? json->pretty(resultLimit) : std::nullopt;
}

std::optional<Utf8Text> minifiedJSON(const Utf8Text& text)
{
    const auto json = jsonObject(text);
    return json ? std::optional(json->minified()) : std::nullopt;
}

std::optional<Utf8Text> base64Decoded(const Utf8Text& text)
{
    // Shorter ones are words as often as not.
    constexpr qsizetype shortest = 8;
    if (isTooLarge(text))
        return std::nullopt;
    const QByteArrayView trimmed = WhiteSpace::trimmed(text.utf8());
    if (trimmed.size() < shortest)
        return std::nullopt;
    const auto bytes = base64Bytes(trimmed);
    if (!bytes || bytes->isEmpty() || !Utf8::isValid(*bytes))
        return std::nullopt;
    return Utf8Text::fromValidUtf8(*bytes);
}

std::optional<Utf8Text> urlDecoded(const Utf8Text& text)
{
    // An escape is longer than what it stands for, so a text with one never is its own decoded form.
    if (isTooLarge(text) || !text.utf8().contains('%') || !PercentEscapes::areWellFormed(text.utf8()))
        return std::nullopt;
    const QByteArray bytes = QByteArray::fromPercentEncoding(text.utf8());
    return Utf8::isValid(bytes) ? std::optional(Utf8Text::fromValidUtf8(bytes)) : std::nullopt;
}

std::optional<QString> epochDate(const Utf8Text& text, const QTimeZone& timeZone)
{
    constexpr qsizetype secondsLength = 10;
    constexpr qsizetype millisecondsLength = 13;
    constexpr qint64 earliest = 978307200;   // 2001-01-01T00:00:00Z
    constexpr qint64 afterLast = 4102444800; // 2100-01-01T00:00:00Z

    const QByteArrayView digits = WhiteSpace::trimmed(text.utf8());
    const bool hasLength = digits.size() == secondsLength || digits.size() == millisecondsLength;
    if (!hasLength || !std::all_of(digits.begin(), digits.end(), isDigit))
        return std::nullopt;
    const qint64 number = digits.toByteArray().toLongLong();
    const qint64 seconds = digits.size() == millisecondsLength ? number / 1000 : number;
    if (seconds < earliest || seconds >= afterLast)
        return std::nullopt;

    const QDateTime utc = QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
    const int offset = timeZone.isValid() ? timeZone.offsetFromUtc(utc) : 0;
    // A zone's time of offset zero is not written with a "Z" by Qt.
    return (offset == 0 ? utc : utc.toOffsetFromUtc(offset)).toString(Qt::ISODate);
}

std::optional<Utf8Text> jwtPayload(const Utf8Text& text)
{
    if (isTooLarge(text))
        return std::nullopt;
    const QByteArrayView trimmed = WhiteSpace::trimmed(text.utf8());
    QByteArrayView payload;
    int pieces = 0;
    for (qsizetype start = 0; start <= trimmed.size();) {
        qsizetype end = trimmed.indexOf('.', start);
        while (end >= 0 && !Graphemes::standsAlone(trimmed, end))
            end = trimmed.indexOf('.', end + 1);
        if (end < 0)
            end = trimmed.size();
        if (end > start && ++pieces == 2)
            payload = trimmed.sliced(start, end - start);
        if (pieces > 3)
            return std::nullopt;
        start = end + 1;
    }
    if (pieces != 3)
        return std::nullopt;

    // The alphabet for URLs (RFC 4648, section 5) leaves out the padding.
    QByteArray encoded = payload.toByteArray().replace('-', '+').replace('_', '/');
    encoded.append((4 - encoded.size() % 4) % 4, '=');
    const auto bytes = base64Bytes(encoded);
    const auto json = bytes ? JSONText::read(*bytes) : std::nullopt;
    return json && json->isObject() ? json->pretty(resultLimit) : std::nullopt;
}

std::optional<Utf8Text> slug(const Utf8Text& text)
{
    constexpr qsizetype longest = 80;
    const QByteArrayView trimmed = WhiteSpace::trimmed(text.utf8());
    const auto [title, isWhole] = Graphemes::prefixOfUtf8(trimmed, longest);
    const QList<uint> codePoints = title.toUcs4();
    const auto isLetter = [](uint codePoint) { return QChar::isLetter(codePoint); };
    if (!isWhole || title.contains(u'\n') || std::none_of(codePoints.begin(), codePoints.end(), isLetter))
        return std::nullopt;

    QString words;
    for (QStringView rest = title; !rest.isEmpty();) {
        const QStringView character = Graphemes::prefix(rest, 1);
        rest = rest.sliced(character.size());
        // What its first code point is, a character is: a syllable keeps its vowel signs.
        const QString folded = TextFolding::withoutDiacritics(character.toString()).toLower();
        if (folded.isEmpty())
            continue;
        if (QChar::isLetterOrNumber(folded.toUcs4().constFirst()))
            words += folded;
        else if (!words.isEmpty() && !words.endsWith(u'-'))
            words += u'-';
    }
    if (words.endsWith(u'-'))
        words.chop(1);
    return words.isEmpty() ? std::nullopt : std::optional(Utf8Text(words));
}

std::optional<Utf8Text> formattedXML(const Utf8Text& text)
{
    if (isTooLarge(text))
        return std::nullopt;
    const auto document = XMLText::formatted(WhiteSpace::trimmed(text.utf8()), resultLimit);
    return document ? std::optional(Utf8Text::fromValidUtf8(*document)) : std::nullopt;
}

} // namespace ClipboardCore::ContentDetectors
