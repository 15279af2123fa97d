#pragma once

#include "LinkMetadataProvider.h"

#include <QList>

#include <utility>

namespace Clipboard::Testing {

/// A web whose pages have the titles that the test says, when the test says.
class FakeLinkMetadataProvider final : public LinkMetadataProvider
{
public:
    void fetchTitle(const QUrl& link, std::chrono::milliseconds limit,
                    std::function<void(const std::optional<QString>& title)> done) override
    {
        links.append(link);
        limits.append(limit);
        underWay.append(std::move(done));
    }
    /// Ends the request that has waited longest.
    void finish(const std::optional<QString>& title) { underWay.takeFirst()(title); }

    QList<QUrl> links;
    QList<std::chrono::milliseconds> limits;
    QList<std::function<void(const std::optional<QString>& title)>> underWay;
};

} // namespace Clipboard::Testing
