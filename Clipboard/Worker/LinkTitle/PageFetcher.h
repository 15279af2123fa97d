#pragma once

#include <QByteArray>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

namespace Clipboard {

/// As much of a page as is read: its head stands at its beginning.
inline constexpr qsizetype maxPageBytes = qsizetype{1024} * 1024;

/// Honest chains have two or three hops (to https, to www, past a link shortener); browsers give up after twenty.
inline constexpr int maxRedirects = 10;

/// An HTML page or the beginning of one.
struct Page
{
    QByteArray bytes;       ///< at most `maxPageBytes`
    QByteArray contentType; ///< the header, empty when there was none
};

/// Gets the page behind an http or https link, waiting for it in an event loop. `isEnough` is asked whether what has
/// come will do, whenever that may be the whole head. Nothing when the answer is an error, no HTML or compressed, and
/// when it is not there within `limit`.
/// Nothing is kept and nothing given away: no cookies, no cache, no name and password, not even those in the link.
/// Every server is asked that the user could ask, those of the own machine and network too: the link is the user's.
[[nodiscard]] std::optional<Page> fetchPage(const QUrl& link, std::chrono::milliseconds limit,
                                            const std::function<bool(const Page&)>& isEnough);

/// Where a redirect leads. Nothing when that is not the web, or leads from https to http.
[[nodiscard]] std::optional<QUrl> redirectTarget(const QUrl& from, const QByteArray& location);

} // namespace Clipboard
