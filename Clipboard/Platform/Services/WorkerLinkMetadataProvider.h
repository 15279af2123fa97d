#pragma once

#include "LinkMetadataProvider.h"
#include "WorkerQueue.h"

namespace Clipboard {

/// Asks for titles with the worker program.
class WorkerLinkMetadataProvider final : public LinkMetadataProvider
{
public:
    /// They mostly wait for the network, and each has a few seconds only.
    static constexpr int maxAtOnce = 4;

    /// `worker` is the path of the worker program.
    explicit WorkerLinkMetadataProvider(QString worker);

    void fetchTitle(const QUrl& link, std::chrono::milliseconds limit,
                    std::function<void(const std::optional<QString>& title)> done) override;

private:
    WorkerQueue m_queue;
};

} // namespace Clipboard
