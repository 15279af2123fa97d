#include "WorkerQueue.h"

#include <algorithm>
#include <utility>

namespace Clipboard {

WorkerQueue::WorkerQueue(QString program, int maxAtOnce)
    : m_program(std::move(program))
    , m_maxAtOnce(maxAtOnce)
{
}

void WorkerQueue::run(WorkerTask task, Answer answer)
{
    auto* process = new WorkerProcess(m_program, std::move(task), this);
    m_processes.append(process);
    connect(process, &WorkerProcess::ended, this, [this, process] {
        m_processes.removeOne(process);
        process->deleteLater();
        startNext();
    });
    connect(process, &WorkerProcess::answered, this, std::move(answer));
    startNext();
}

void WorkerQueue::startNext()
{
    const auto running = std::ranges::count_if(m_processes, &WorkerProcess::isStarted);
    const auto next = std::ranges::find_if_not(m_processes, &WorkerProcess::isStarted);
    if (running < m_maxAtOnce && next != m_processes.end())
        (*next)->start();
}

} // namespace Clipboard
