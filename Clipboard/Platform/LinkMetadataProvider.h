#pragma once

#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

namespace Clipboard {

/// Asks the web what a link leads to, off the main thread and outside this process.
class LinkMetadataProvider
{
public:
    virtual ~LinkMetadataProvider() = default;

    /// Calls `done` once, on the main thread and never before this returns, with the title of the page. Nothing when
    /// the page has none, when it cannot be had, and when it took longer than `limit`. `done` is not called after the
    /// provider is gone.
    virtual void fetchTitle(const QUrl& link, std::chrono::milliseconds limit,
                            std::function<void(const std::optional<QString>& title)> done) = 0;
};

} // namespace Clipboard
