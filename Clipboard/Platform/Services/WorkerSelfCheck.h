#pragma once

#include "WorkerCheck.h"
#include "WorkerQueue.h"

namespace Clipboard {

/// Has the worker itself try, in a process beside those that have work to do.
class WorkerSelfCheck final : public WorkerCheck
{
public:
    /// `worker` is the path of the worker program.
    explicit WorkerSelfCheck(QString worker);

    void check(std::function<void(const QString& problem)> done) override;

private:
    WorkerQueue m_queue;
    bool m_isConfined = false; // what a kernel could once, it can until it ends
};

} // namespace Clipboard
