#include "Support/UrlHost.h"

#include "Support/PercentEscapes.h"
#include "Support/Utf8.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>

namespace ClipboardCore {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// True when `text` has only letters, digits and `others`, and more than nothing.
bool consistsOf(QByteArrayView text, QByteArrayView others)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(),
                                          [others](char c) { return isLetter(c) || isDigit(c) || others.contains(c); });
}

/// A name (RFC 3986, reg-name), and with `others` allowed in it what is made like one. No label is too long, empty or
/// ends badly: that is the business of whoever looks it up.
bool isName(QByteArrayView text, QByteArrayView others = {})
{
    constexpr QByteArrayView signs = "-._~!$&'()*+,;=%";
    return PercentEscapes::areWellFormed(text) && std::all_of(text.begin(), text.end(), [&](char c) {
               return isLetter(c) || isDigit(c) || signs.contains(c) || others.contains(c) ||
                      static_cast<unsigned char>(c) >= 0x80;
           });
}

/// What stands between the brackets of a host.
bool isAddressLiteral(QByteArrayView text)
{
    constexpr qsizetype longest = INET6_ADDRSTRLEN;
    if (text.startsWith('v') || text.startsWith('V')) {
        const qsizetype dot = text.indexOf('.');
        const auto isHexDigit = [](char c) { return isDigit(c) || (isLetter(c) && (c | 0x20) <= 'f'); };
        return dot > 1 && std::all_of(text.begin() + 1, text.begin() + dot, isHexDigit) &&
               consistsOf(text.sliced(dot + 1), "-._~!$&'()*+,;=:");
    }
    std::array<unsigned char, sizeof(in6_addr)> address{};
    return text.size() < longest && ::inet_pton(AF_INET6, text.toByteArray().constData(), address.data()) == 1;
}

/// The host in an authority, brackets included; nothing when the authority is malformed.
std::optional<QByteArrayView> hostIn(QByteArrayView authority)
{
    const qsizetype at = authority.indexOf('@');
    if (at >= 0 && !isName(authority.first(at), ":"))
        return std::nullopt;
    const QByteArrayView rest = authority.sliced(at + 1);
    const bool isLiteral = rest.startsWith('[');
    const qsizetype bracket = isLiteral ? rest.indexOf(']') : -1;
    const qsizetype colon = rest.indexOf(':', bracket + 1);
    const QByteArrayView host = rest.first(colon < 0 ? rest.size() : colon);
    const QByteArrayView port = rest.sliced(host.size() + (colon < 0 ? 0 : 1));
    const bool isHost =
        isLiteral ? bracket == host.size() - 1 && isAddressLiteral(host.sliced(1).chopped(1)) : isName(host);
    return isHost && std::all_of(port.begin(), port.end(), isDigit) ? std::optional(host) : std::nullopt;
}

struct Beginning
{
    bool hasScheme = false;
    QByteArrayView host; // empty without an authority, too
};

std::optional<Beginning> beginning(QByteArrayView url)
{
    const auto endOf = [](QByteArrayView text, QByteArrayView delimiters) {
        return std::find_first_of(text.begin(), text.end(), delimiters.begin(), delimiters.end()) - text.begin();
    };
    Beginning result;
    const qsizetype end = endOf(url, ":/?#");
    if (end < url.size() && url[end] == ':') {
        // A relative reference has no colon in its first segment.
        if (end == 0 || !isLetter(url[0]) || !consistsOf(url.first(end), "+-."))
            return std::nullopt;
        result.hasScheme = true;
        url = url.sliced(end + 1);
    }
    if (!url.startsWith("//"))
        return result;
    url = url.sliced(2);
    const QByteArrayView searched = url.first(std::min(url.size(), longestAuthority + 1));
    const qsizetype length = endOf(searched, "/?#");
    const auto host = length > longestAuthority ? std::nullopt : hostIn(url.first(length));
    if (!host)
        return std::nullopt;
    result.host = *host;
    return result;
}

} // namespace

std::optional<QString> urlHost(QByteArrayView utf8)
{
    const auto found = beginning(utf8);
    if (!found || !found->hasScheme || found->host.isEmpty())
        return std::nullopt;
    const QByteArrayView host = found->host;
    return Utf8::toString(host.startsWith('[') ? host.sliced(1).chopped(1) : host);
}

bool isUrlReference(QByteArrayView utf8)
{
    return beginning(utf8).has_value();
}

} // namespace ClipboardCore
