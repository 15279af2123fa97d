#include "WorkerLinkMetadataProvider.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace Clipboard {

WorkerLinkMetadataProvider::WorkerLinkMetadataProvider(QString worker)
    : m_queue(std::move(worker), maxAtOnce)
{
}

void WorkerLinkMetadataProvider::fetchTitle(const QUrl& link, std::chrono::milliseconds limit,
                                            std::function<void(const std::optional<QString>& title)> done)
{
    m_queue.run({.arguments = {u"title"_s}, .input = link.toEncoded(), .limit = limit},
                [done = std::move(done)](const std::optional<QString>& output) {
                    const QString title = output.value_or(QString()).simplified();
                    done(title.isEmpty() ? std::nullopt : std::optional(title));
                });
}

} // namespace Clipboard
