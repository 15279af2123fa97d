#include "Support/SerialQueue.h"

#include <QByteArray>

#include <algorithm>
#include <condition_variable>
#include <future>
#include <map>
#include <mutex>
#include <thread>
#include <tuple>
#include <utility>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace ClipboardCore {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int utilityNiceness = 10;

void nameThread(const QByteArray& label)
{
    constexpr qsizetype longestThreadName = 15; // Linux
    pthread_setname_np(pthread_self(), label.right(longestThreadName).constData());
}

} // namespace

struct SerialQueue::Private
{
    struct Key // order of execution
    {
        Clock::time_point due;
        TaskID id;
        bool operator<(const Key& other) const { return std::tie(due, id) < std::tie(other.due, other.id); }
    };

    Private(QByteArray threadLabel, Priority threadPriority)
        : label(std::move(threadLabel))
        , priority(threadPriority)
    {
    }

    void run();

    const QByteArray label;
    const Priority priority;
    std::mutex mutex;
    std::condition_variable changed;
    // All below: guarded by `mutex`.
    std::map<Key, Task> tasks;
    quint64 lastID = 0;
    bool isStopping = false;
    std::thread thread;
};

void SerialQueue::Private::run()
{
    nameThread(label);
    // Linux keeps a priority for each thread; the calling thread is 0.
    if (priority == Priority::utility)
        setpriority(PRIO_PROCESS, 0, utilityNiceness);

    std::unique_lock lock(mutex);
    while (!isStopping) {
        if (tasks.empty()) {
            changed.wait(lock);
            continue;
        }
        if (const auto due = tasks.begin()->first.due; due > Clock::now()) {
            changed.wait_until(lock, due);
            continue;
        }
        {
            const auto next = tasks.extract(tasks.begin());
            lock.unlock();
            next.mapped()();
        }
        lock.lock();
    }
}

SerialQueue::SerialQueue(QByteArray label, Priority priority)
    : d(std::make_unique<Private>(std::move(label), priority))
{
}

SerialQueue::~SerialQueue()
{
    {
        const std::lock_guard lock(d->mutex);
        d->isStopping = true;
    }
    d->changed.notify_one();
    if (d->thread.joinable())
        d->thread.join();
}

SerialQueue::TaskID SerialQueue::async(Task task, std::chrono::nanoseconds delay)
{
    const std::lock_guard lock(d->mutex);
    const TaskID id{++d->lastID};
    d->tasks.emplace(Private::Key{Clock::now() + delay, id}, std::move(task));
    if (!d->thread.joinable())
        d->thread = std::thread([this] { d->run(); });
    d->changed.notify_one();
    return id;
}

void SerialQueue::cancel(TaskID id)
{
    Task cancelled; // destroyed without the lock, since it may own much
    const std::lock_guard lock(d->mutex);
    const auto found =
        std::find_if(d->tasks.begin(), d->tasks.end(), [id](const auto& entry) { return entry.first.id == id; });
    if (found == d->tasks.end())
        return;
    cancelled = std::move(found->second);
    d->tasks.erase(found);
}

void SerialQueue::sync(const Task& task)
{
    std::promise<void> reached;
    async([&] {
        task();
        reached.set_value();
    });
    reached.get_future().wait();
}

void SerialQueue::drain()
{
    {
        const std::lock_guard lock(d->mutex);
        if (!d->thread.joinable())
            return;
    }
    sync([] {});
}

} // namespace ClipboardCore
