#pragma once

#include "WorkerProcess.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace Clipboard {

/// Runs the worker program for one task each, a few at the same time and the others in the order in which they came.
class WorkerQueue final : public QObject
{
    Q_OBJECT
public:
    using Answer = std::function<void(const std::optional<QString>& output)>;

    /// `program` is the path of the worker.
    WorkerQueue(QString program, int maxAtOnce);

    /// Calls `answer` once, on the main thread and never before this returns, with what WorkerProcess::answered() says;
    /// not at all when the queue is gone by then. Time spent in the queue counts.
    void run(WorkerTask task, Answer answer);

private:
    void startNext();

    QString m_program;
    int m_maxAtOnce;
    QList<WorkerProcess*> m_processes; // children; the oldest first
};

} // namespace Clipboard
