#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>
#include <QThreadPool>

#include <utility>

namespace Clipboard {

/// Runs `work` on the pool and hands its result to `done` on the main thread, unless `context` is gone by then. The
/// main thread must outlive the pool's work: its owner waits for the pool before the application object goes.
template <typename Work, typename Done>
void runOffMainThread(QThreadPool& pool, QObject* context, Work work, Done done)
{
    pool.start([guard = QPointer<QObject>(context), work = std::move(work), done = std::move(done)]() mutable {
        auto deliver = [guard = std::move(guard), result = work(), done = std::move(done)]() mutable {
            // Asked on the main thread, where the context dies: it cannot go between the question and the call.
            if (guard)
                done(std::move(result));
        };
        QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(deliver), Qt::QueuedConnection);
    });
}

} // namespace Clipboard
