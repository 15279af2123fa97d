#include "WorkerSelfCheck.h"

#include <QCoreApplication>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

// It takes as long as its libraries to load; a person waits for the answer.
constexpr auto checkLimit = std::chrono::seconds(10);

} // namespace

WorkerSelfCheck::WorkerSelfCheck(QString worker)
    : m_queue(std::move(worker), 1)
{
}

void WorkerSelfCheck::check(std::function<void(const QString& problem)> done)
{
    if (m_isConfined)
        return done({});
    const auto judge = [this, done = std::move(done)](const std::optional<QString>& output) {
        if (!output)
            return done(QCoreApplication::translate("WorkerCheck", "tessaly-worker cannot be run."));
        m_isConfined = output->isEmpty();
        const QString missing = output->trimmed().replace(u'\n', u"; "_s);
        done(m_isConfined
                 ? QString()
                 : QCoreApplication::translate("WorkerCheck", "tessaly-worker is not confined: %1.").arg(missing));
    };
    m_queue.run({.arguments = {u"check"_s}, .input = {}, .limit = checkLimit}, judge);
}

} // namespace Clipboard
