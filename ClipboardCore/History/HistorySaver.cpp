#include "History/HistorySaver.h"

#include "History/HistoryDisk.h"
#include "Support/SerialQueue.h"

#include <QObject>

#include <algorithm>
#include <atomic>
#include <utility>

namespace ClipboardCore {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

// Someone who copies without a pause gets the file written all the same.
constexpr auto longestDeferral = 5s;
// Nobody waits for the flush, and every flush wakes the disk.
constexpr auto flushInterval = 1s;
// What the user removed stays on the disk no longer than this; meanwhile more may be removed.
constexpr auto forgetDelay = 30s;
constexpr auto firstRetry = std::chrono::milliseconds(1s);
constexpr auto longestRetry = std::chrono::milliseconds(10s);

} // namespace

struct HistorySaver::Private
{
    Private(const QString& path, std::chrono::nanoseconds saveDelay)
        : disk(path)
        , delay(saveDelay)
    {
    }

    void append(const QList<HistoryOperation>& operations, const QList<ClipItem>& items);
    // On `io`.
    void saveWhenDue();
    void forgetSoon();
    void catchUp();
    std::optional<QString> save(const std::optional<QList<ClipItem>>& items = std::nullopt);
    void retrySoon();
    void report(const std::optional<QString>& failure);

    HistoryDisk disk;
    const std::chrono::nanoseconds delay;
    QObject receiver; // of what `io` has to say
    std::function<void(const std::optional<QString>&)> failureChanged;

    bool isLocked = false;
    std::optional<SerialQueue::TaskID> pendingSave;
    Clock::time_point due;
    Clock::time_point since;

    std::atomic<bool> isFlushPending = false;
    // Used on `io` alone.
    std::optional<SerialQueue::TaskID> pendingForget;
    std::optional<SerialQueue::TaskID> pendingRetry;
    std::chrono::milliseconds retryDelay = firstRetry;
    bool isFailing = false;

    // Last, so that the threads end before what they use does. Writing the file may take long: appending has a thread
    // of its own, which is idle by the time `io` ends.
    SerialQueue journal{"com.tessaly.mac.history-journal", SerialQueue::Priority::normal};
    SerialQueue io{"com.tessaly.mac.history-io"};
};

void HistorySaver::Private::append(const QList<HistoryOperation>& operations, const QList<ClipItem>& items)
{
    disk.append(operations, items);
    if (isFlushPending.exchange(true))
        return;
    const auto flush = [this] {
        isFlushPending = false;
        disk.flushJournal();
    };
    io.async(flush, flushInterval);
}

void HistorySaver::Private::saveWhenDue()
{
    journal.drain();
    if (disk.isSaveDue())
        static_cast<void>(save());
    else if (disk.isForgettingDue())
        forgetSoon();
}

void HistorySaver::Private::forgetSoon()
{
    if (pendingForget)
        return;
    const auto forget = [this] {
        pendingForget.reset();
        if (disk.isForgettingDue())
            static_cast<void>(save());
    };
    pendingForget = io.async(forget, forgetDelay);
}

/// With what was left to do when the program ended the last time.
void HistorySaver::Private::catchUp()
{
    if (disk.isForgettingDue())
        io.async([this] { forgetSoon(); });
    if (disk.isCatchingUpDue())
        io.async([this] { static_cast<void>(save()); }, delay);
}

std::optional<QString> HistorySaver::Private::save(const std::optional<QList<ClipItem>>& items)
{
    if (pendingRetry)
        io.cancel(*std::exchange(pendingRetry, std::nullopt));
    auto failure = disk.save(items);
    if (failure)
        retrySoon();
    else
        retryDelay = firstRetry;
    report(failure);
    return failure;
}

void HistorySaver::Private::retrySoon()
{
    const auto retry = [this] {
        pendingRetry.reset();
        static_cast<void>(save());
    };
    pendingRetry = io.async(retry, retryDelay);
    retryDelay = std::min(2 * retryDelay, longestRetry);
}

void HistorySaver::Private::report(const std::optional<QString>& failure)
{
    if (std::exchange(isFailing, failure.has_value()) == failure.has_value())
        return;
    const auto tell = [this, failure] {
        if (failureChanged)
            failureChanged(failure);
    };
    QMetaObject::invokeMethod(&receiver, tell, Qt::QueuedConnection);
}

HistorySaver::HistorySaver(const QString& path, std::chrono::nanoseconds delay)
    : d(std::make_unique<Private>(path, delay))
{
}

HistorySaver::~HistorySaver()
{
    d->journal.drain();
}

EntryList HistorySaver::load()
{
    const std::optional<EntryList> entries = d->disk.load();
    d->isLocked = !entries;
    if (entries)
        d->catchUp();
    return entries.value_or(EntryList());
}

bool HistorySaver::isLocked() const
{
    return d->isLocked;
}

void HistorySaver::setSealing(const Sealing& sealing, std::function<void(const std::optional<EntryList>& found)> opened)
{
    const auto take = [this, sealing, wasLocked = d->isLocked, opened = std::move(opened)] {
        d->journal.drain();
        d->disk.setSealing(sealing);
        const std::optional<EntryList> found = wasLocked ? d->disk.load() : std::nullopt;
        const auto tell = [this, found, opened] {
            d->isLocked = d->isLocked && !found;
            opened(found);
            if (found)
                d->io.async([this] { d->catchUp(); });
        };
        QMetaObject::invokeMethod(&d->receiver, tell, Qt::QueuedConnection);
        if (!wasLocked && !d->disk.isAsWanted())
            static_cast<void>(d->save());
    };
    d->io.async(take);
}

const HistoryDisk& HistorySaver::disk() const
{
    return d->disk;
}

void HistorySaver::onFailureChanged(std::function<void(const std::optional<QString>& failure)> callback)
{
    d->failureChanged = std::move(callback);
}

void HistorySaver::changed(const QList<HistoryOperation>& operations, const QList<ClipItem>& items)
{
    if (d->isLocked)
        return;
    d->journal.async([this, operations, items] { d->append(operations, items); });

    if (d->pendingSave)
        d->io.cancel(*d->pendingSave);
    const auto now = Clock::now();
    if (now >= d->due)
        d->since = now;
    d->due = std::min(now + d->delay, d->since + std::max<std::chrono::nanoseconds>(d->delay, longestDeferral));
    d->pendingSave = d->io.async([this] { d->saveWhenDue(); }, d->due - now);
}

void HistorySaver::whenRecorded(std::function<void()> done)
{
    d->journal.async(
        [this, done = std::move(done)] { QMetaObject::invokeMethod(&d->receiver, done, Qt::QueuedConnection); });
}

std::optional<QString> HistorySaver::save(const QList<ClipItem>& items)
{
    if (d->isLocked)
        return QStringLiteral("The history is locked");
    std::optional<QString> failure;
    d->journal.drain();
    d->io.sync([&] { failure = d->save(items); });
    return failure;
}

bool HistorySaver::flush(const QList<HistoryOperation>& operations, const QList<ClipItem>& items)
{
    if (!d->pendingSave && (d->isLocked || !d->disk.isFileGone())) {
        d->journal.drain();
        d->io.drain();
        return false;
    }
    if (d->pendingSave)
        d->io.cancel(*std::exchange(d->pendingSave, std::nullopt));
    if (save(items))
        d->disk.append(operations, items);
    return true;
}

} // namespace ClipboardCore
