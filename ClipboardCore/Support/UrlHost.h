#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace ClipboardCore {

/// The authority of a URL (RFC 3986, section 3.2) longer than this is no address. A host name has at most 253 octets;
/// the rest is room for user information.
inline constexpr qsizetype longestAuthority = 4096;

/// The host of a URL with a scheme and an authority, as written, an IPv6 address without its brackets. Nothing when
/// `utf8` is no such URL or its host is empty. Looks only at the beginning up to the path, whatever the size.
[[nodiscard]] std::optional<QString> urlHost(QByteArrayView utf8);

} // namespace ClipboardCore
