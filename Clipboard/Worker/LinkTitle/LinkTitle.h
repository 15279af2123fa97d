#pragma once

#include <QString>
#include <QUrl>

#include <chrono>
#include <optional>

namespace Clipboard {

/// The title of the page behind the link, as `htmlTitle` reads it. Nothing when the link is not http or https, when the
/// page cannot be had within `limit`, redirects and all, or has none. Runs an event loop of its own and needs a
/// QCoreApplication.
[[nodiscard]] std::optional<QString> linkTitle(const QUrl& link, std::chrono::milliseconds limit);

} // namespace Clipboard
