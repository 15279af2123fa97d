#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

/// URLs by the grammar of RFC 3986, up to where the path begins. What stands there may be anything, as in a browser;
/// letters of other scripts may stand unescaped (RFC 3987).
namespace ClipboardCore {

/// The authority of a URL (RFC 3986, section 3.2) longer than this is no address: a host name has at most 253 octets,
/// and servers refuse whole links of that size.
inline constexpr qsizetype longestAuthority = qsizetype{64} * 1024;

/// The host of a URL with a scheme and an authority, as written, an IPv6 address without its brackets. Nothing when
/// `utf8` is no such URL or its host is empty. Looks only at the beginning up to the path, whatever the size.
[[nodiscard]] std::optional<QString> urlHost(QByteArrayView utf8);

/// True for what begins as a URL or a relative reference does: with a scheme or without, with an authority or without,
/// but with neither malformed.
[[nodiscard]] bool isUrlReference(QByteArrayView utf8);

} // namespace ClipboardCore
