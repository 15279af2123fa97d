#include "Actions/ContentDetectors.h"

#include "Support/PercentEscapes.h"
#include "Support/UrlHost.h"

#include <algorithm>
#include <array>

namespace ClipboardCore::ContentDetectors {

namespace {

constexpr std::array<QByteArrayView, 12> trackerParams{"fbclid",  "gclid",  "dclid",  "msclkid", "igshid", "mc_eid",
                                                       "vero_id", "twclid", "ttclid", "yclid",   "_hsenc", "_hsmi"};
constexpr QByteArrayView trackerPrefix = "utm_";
constexpr qsizetype longestTracker = 7;

/// True for a byte that may stand in a URL, or belongs to a letter of another script.
bool isUrlSign(char c)
{
    static const auto table = [] {
        constexpr QByteArrayView refused = "\"<>\\^`{|}\x7F";
        std::array<bool, 256> signs{};
        for (size_t byte = '!'; byte < signs.size(); ++byte)
            signs.at(byte) = !refused.contains(static_cast<char>(byte));
        return signs;
    }();
    return table[static_cast<unsigned char>(c)];
}

int hexValue(char c)
{
    return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
}

/// `parameter` is "name=value" or "name", its escapes well-formed.
bool isTracker(QByteArrayView parameter)
{
    // As much of the name, unescaped and in lower case, as can decide.
    std::array<char, longestTracker + 1> buffer{};
    qsizetype length = 0;
    for (qsizetype at = 0; at < parameter.size() && parameter[at] != '=' && length <= longestTracker; ++at) {
        char c = parameter[at];
        if (c == '%') {
            c = static_cast<char>(hexValue(parameter[at + 1]) * 16 + hexValue(parameter[at + 2]));
            at += 2;
        }
        buffer.at(static_cast<size_t>(length++)) = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
    }
    const QByteArrayView name(buffer.data(), length);
    return name.startsWith(trackerPrefix) ||
           std::find(trackerParams.begin(), trackerParams.end(), name) != trackerParams.end();
}

} // namespace

std::optional<Utf8Text> strippedTrackers(const Utf8Text& text)
{
    const QByteArrayView url = text.utf8();
    const qsizetype fragment = url.indexOf('#');
    const qsizetype end = fragment < 0 ? url.size() : fragment;
    const qsizetype queryMark = url.first(end).indexOf('?');
    if (queryMark < 0)
        return std::nullopt;
    const bool isUrl = std::all_of(url.begin(), url.end(), isUrlSign) && PercentEscapes::areWellFormed(url) &&
                       url.sliced(end).count('#') <= 1 && isUrlReference(url);
    if (!isUrl)
        return std::nullopt;

    QByteArray kept;
    kept.reserve(end - queryMark);
    bool keptAny = false;
    bool removedAny = false;
    for (qsizetype start = queryMark + 1; start <= end;) {
        const qsizetype separator = url.first(end).indexOf('&', start);
        const qsizetype next = separator < 0 ? end : separator;
        const QByteArrayView parameter = url.sliced(start, next - start);
        if (isTracker(parameter)) {
            removedAny = true;
        } else {
            kept.append(keptAny ? '&' : '?');
            kept.append(parameter);
            keptAny = true;
        }
        start = next + 1;
    }
    if (!removedAny)
        return std::nullopt;
    return Utf8Text::fromValidUtf8(url.first(queryMark).toByteArray() + kept + url.sliced(end).toByteArray());
}

} // namespace ClipboardCore::ContentDetectors
