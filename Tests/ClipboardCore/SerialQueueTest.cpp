#include "Support/SerialQueue.h"

#include <QTest>

#include <array>
#include <atomic>
#include <mutex>
#include <thread>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// What ran, in order; used from two threads.
struct Log
{
    SerialQueue::Task task(int number)
    {
        return [this, number] {
            const std::lock_guard lock(mutex);
            all.append(number);
        };
    }
    QList<int> numbers()
    {
        const std::lock_guard lock(mutex);
        return all;
    }

    std::mutex mutex;
    QList<int> all;
};

} // namespace

class SerialQueueTest final : public QObject
{
    Q_OBJECT
private slots:
    void runsWhenDueUnlessCancelled();
    void drainWaitsForRunningAndDueTasksAlone();
    void destructionWaitsForTheRunningTask();
    void takesTasksFromManyThreads();
};

void SerialQueueTest::runsWhenDueUnlessCancelled()
{
    Log log;
    SerialQueue queue("test");
    queue.async(log.task(3), 60ms);
    queue.async(log.task(2), 30ms);
    queue.async(log.task(1));
    const auto cancelled = queue.async(log.task(9), 20ms);
    queue.cancel(cancelled);
    QTRY_COMPARE(log.numbers(), QList<int>({1, 2, 3}));
    queue.cancel(cancelled); // again, and too late: nothing
}

void SerialQueueTest::drainWaitsForRunningAndDueTasksAlone()
{
    Log log;
    SerialQueue queue("test");
    queue.drain(); // nothing to wait for
    queue.async(log.task(9), 1h);
    queue.async([] { std::this_thread::sleep_for(50ms); });
    queue.async(log.task(1));
    queue.drain();
    QCOMPARE(log.numbers(), QList<int>({1}));
}

void SerialQueueTest::destructionWaitsForTheRunningTask()
{
    std::atomic<bool> isStarted = false;
    std::atomic<bool> isDone = false;
    Log log;
    {
        SerialQueue queue("test");
        queue.async([&] {
            isStarted = true;
            std::this_thread::sleep_for(50ms);
            isDone = true;
        });
        queue.async(log.task(1));
        while (!isStarted)
            std::this_thread::yield();
    }
    QVERIFY(isDone);
    QVERIFY(log.numbers().isEmpty());
}

void SerialQueueTest::takesTasksFromManyThreads()
{
    int count = 0; // touched by the tasks alone, which never overlap
    SerialQueue queue("test");
    std::array<std::thread, 4> threads;
    for (std::thread& thread : threads) {
        thread = std::thread([&] {
            for (int task = 0; task < 500; ++task)
                queue.cancel(queue.async([&count] { ++count; }, task % 2 == 0 ? 0ns : 1h));
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    queue.async([&count] { ++count; });
    queue.drain();
    QVERIFY(count >= 1 && count <= 1001);
}

QTEST_GUILESS_MAIN(SerialQueueTest)
#include "SerialQueueTest.moc"
