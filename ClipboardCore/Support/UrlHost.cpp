#include "Support/UrlHost.h"

#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace ClipboardCore {

namespace {

// No registered scheme is half as long.
constexpr qsizetype longestScheme = 64;

bool isSchemeCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' || c == '-' ||
           c == '.';
}

/// What stands between "scheme://" and the path, query, fragment or end.
std::optional<QByteArrayView> authority(QByteArrayView url)
{
    const QByteArrayView beginning = url.first(std::min(url.size(), longestScheme));
    const qsizetype schemeLength = beginning.indexOf("://");
    if (schemeLength <= 0 || !std::all_of(url.begin(), url.begin() + schemeLength, isSchemeCharacter))
        return std::nullopt;
    const QByteArrayView rest = url.sliced(schemeLength + 3);
    const auto isEnd = [](char c) { return c == '/' || c == '?' || c == '#'; };
    const auto searched = rest.begin() + std::min(rest.size(), longestAuthority + 1);
    const qsizetype length = std::find_if(rest.begin(), searched, isEnd) - rest.begin();
    if (length > longestAuthority)
        return std::nullopt;
    return rest.first(length);
}

} // namespace

std::optional<QString> urlHost(QByteArrayView utf8)
{
    const auto found = authority(utf8);
    if (!found)
        return std::nullopt;
    const QString text = QString::fromUtf8(*found);
    // The scheme does not matter to the syntax of an authority; one without rules of its own keeps it to the RFC.
    const QUrl url(u"scheme://"_s + text, QUrl::TolerantMode);
    if (!url.isValid() || url.host().isEmpty())
        return std::nullopt;

    QStringView host = QStringView(text).sliced(text.lastIndexOf(u'@') + 1);
    if (host.startsWith(u'['))
        return host.sliced(1, host.indexOf(u']') - 1).toString();
    if (const qsizetype port = host.lastIndexOf(u':'); port >= 0)
        host.truncate(port);
    return host.toString();
}

} // namespace ClipboardCore
