#include "Support/SerialQueue.h"

#include <QSemaphore>
#include <QTest>

#include <array>
#include <atomic>
#include <thread>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Appends to what is read only after the last of the tasks.
SerialQueue::Task append(QList<int>& ran, int number)
{
    return [&ran, number] { ran.append(number); };
}

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
    QList<int> ran;
    QSemaphore isStarted;
    QSemaphore mayGoOn;
    QSemaphore done;
    SerialQueue queue("test");
    // Nothing else runs before all is said: it holds the queue up. What is due by then runs in the order in which it
    // became due.
    queue.async([&] {
        isStarted.release();
        mayGoOn.acquire();
    });
    isStarted.acquire();
    queue.async(append(ran, 3), -1h);
    queue.async(append(ran, 2), -2h);
    queue.async(append(ran, 1), -3h);
    const auto cancelled = queue.async(append(ran, 9), -4h);
    queue.cancel(cancelled);
    mayGoOn.release();
    queue.async([&done] { done.release(); }, 30ms); // for which it has to wake up
    done.acquire();
    QCOMPARE(ran, QList<int>({1, 2, 3}));
    queue.cancel(cancelled); // again, and too late: nothing
}

void SerialQueueTest::drainWaitsForRunningAndDueTasksAlone()
{
    QList<int> ran;
    SerialQueue queue("test");
    queue.drain(); // nothing to wait for
    queue.async(append(ran, 9), 1h);
    queue.async([] { std::this_thread::sleep_for(50ms); });
    queue.async(append(ran, 1));
    queue.drain();
    QCOMPARE(ran, QList<int>({1}));
}

void SerialQueueTest::destructionWaitsForTheRunningTask()
{
    QSemaphore isStarted;
    std::atomic<bool> isDone = false;
    QList<int> ran;
    {
        SerialQueue queue("test");
        queue.async([&] {
            isStarted.release();
            std::this_thread::sleep_for(50ms);
            isDone = true;
        });
        queue.async(append(ran, 1), 1h);
        isStarted.acquire();
    }
    QVERIFY(isDone);
    QVERIFY(ran.isEmpty());
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
