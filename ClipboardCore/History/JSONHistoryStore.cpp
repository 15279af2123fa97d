#include "History/JSONHistoryStore.h"

#include "History/EntryList.h"
#include "History/HistoryDisk.h"
#include "History/HistorySaver.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace ClipboardCore {

namespace {

std::chrono::nanoseconds nanoseconds(double seconds)
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds));
}

QList<QUuid> idsOf(const QList<ClipItem>& items)
{
    QList<QUuid> ids;
    for (const ClipItem& item : items)
        ids.append(item.id);
    return ids;
}

} // namespace

struct JSONHistoryStore::Private
{
    /// Notes a change that was made, for the journal.
    template <typename Change>
    void note(const Change& change)
    {
        changes.append({currentTime(), change});
    }
    /// Evicts the oldest entries beyond the cap, then, but for `newest`, those beyond the largest size.
    QList<ClipItem> enforceCap(const QUuid& newest);

    qsizetype cap;
    qint64 largest;
    HistorySaver saver;
    EntryList entries = saver.load();
    QList<HistoryOperation> changes = {}; // since the last saveAsync()
};

QList<ClipItem> JSONHistoryStore::Private::enforceCap(const QUuid& newest)
{
    QList<ClipItem> removed;
    const auto evict = [&](qsizetype position) {
        if (position >= 0)
            removed.append(entries.take(position));
        return position >= 0;
    };
    while (entries.items().size() > cap && evict(entries.oldestUnpinned())) {
    }
    while (entries.byteCount() > largest && evict(entries.oldestUnpinned(newest))) {
    }
    if (!removed.isEmpty())
        note(HistoryOperation::Remove{idsOf(removed), true});
    return removed;
}

JSONHistoryStore::JSONHistoryStore(const QString& path, qsizetype cap, double saveDelaySeconds, qint64 largest)
    : d(new Private{cap, largest, {path, nanoseconds(saveDelaySeconds)}})
{
}

JSONHistoryStore::~JSONHistoryStore() = default;

const QList<ClipItem>& JSONHistoryStore::items() const
{
    return d->entries.items();
}

std::optional<QString> JSONHistoryStore::unreadableFile() const
{
    return d->saver.disk().unreadableFile();
}

bool JSONHistoryStore::namesAllPictures() const
{
    return !isLocked() && !d->saver.disk().keepsUnreadableFile();
}

bool JSONHistoryStore::isLocked() const
{
    return d->saver.isLocked();
}

void JSONHistoryStore::setSealing(const Sealing& sealing, std::function<void(const QList<ClipItem>& evicted)> done)
{
    d->saver.setSealing(sealing, [this, done = std::move(done)](const std::optional<EntryList>& found) {
        done(found ? join(*found) : QList<ClipItem>());
    });
}

/// What was recorded without the history, into the history.
QList<ClipItem> JSONHistoryStore::join(const EntryList& found)
{
    const QList<ClipItem> recorded = items();
    d->entries = found;
    d->changes.clear();
    QList<ClipItem> evicted;
    for (qsizetype i = recorded.size(); i-- > 0;) {
        evicted += add(recorded[i]);
        const qsizetype known = d->entries.findEqual(recorded[i]);
        if (recorded[i].isPinned && known >= 0 && !items()[known].isPinned)
            togglePin(items()[known].id);
    }
    if (!recorded.isEmpty())
        saveAsync();
    return evicted;
}

double JSONHistoryStore::timeOfNewEntry() const
{
    double time = currentTime();
    for (const ClipItem& item : items())
        time = std::max(time, item.createdAt);
    return time;
}

QList<ClipItem> JSONHistoryStore::add(const ClipItem& item)
{
    const qsizetype equal = d->entries.findEqual(item);
    if (equal < 0) {
        d->entries.insert(item);
        d->note(HistoryOperation::Put{item});
        return d->enforceCap(item.id);
    }
    const QUuid id = items()[equal].id;
    d->entries.touch(equal, item.createdAt, item.sourceApp, item.bundleID, item.furtherFiles);
    d->note(HistoryOperation::Touch{id, item.createdAt, item.sourceApp, item.bundleID, item.furtherFiles});
    return d->enforceCap(id);
}

QList<ClipItem> JSONHistoryStore::restore(const QList<ClipItem>& items)
{
    for (const ClipItem& item : items) {
        if (d->entries.find(item.id) >= 0)
            continue;
        const qsizetype equal = d->entries.findEqual(item);
        if (equal < 0) {
            d->entries.insert(item);
            d->note(HistoryOperation::Put{item});
        } else if (item.isPinned && !this->items()[equal].isPinned) {
            togglePin(this->items()[equal].id);
        }
    }
    return d->enforceCap({});
}

QList<ClipItem> JSONHistoryStore::setCap(qsizetype cap)
{
    d->cap = cap;
    return d->enforceCap({});
}

QList<ClipItem> JSONHistoryStore::evictBefore(double oldest)
{
    QList<ClipItem> removed;
    for (qsizetype last = d->entries.oldestUnpinned(); last >= 0 && items().at(last).createdAt < oldest;
         last = d->entries.oldestUnpinned())
        removed.append(d->entries.take(last));
    if (!removed.isEmpty())
        d->note(HistoryOperation::Remove{idsOf(removed), true});
    return removed;
}

void JSONHistoryStore::togglePin(const QUuid& id)
{
    const qsizetype position = d->entries.find(id);
    if (position < 0)
        return;
    const bool isPinned = !items()[position].isPinned;
    d->note(HistoryOperation::Pin{id, isPinned}); // first: `id` may be the entry's own
    d->entries.setPinned(position, isPinned);
}

std::optional<ClipItem> JSONHistoryStore::remove(const QUuid& id)
{
    const qsizetype position = d->entries.find(id);
    if (position < 0)
        return std::nullopt;
    d->note(HistoryOperation::Remove{{id}});
    return d->entries.take(position);
}

QList<ClipItem> JSONHistoryStore::removeAll(bool keepingPinned)
{
    const auto firstUnpinned = std::ranges::find(items(), false, &ClipItem::isPinned);
    QList<ClipItem> removed = d->entries.truncate(keepingPinned ? firstUnpinned - items().cbegin() : 0);
    if (!removed.isEmpty())
        d->note(HistoryOperation::Remove{idsOf(removed)});
    return removed;
}

std::optional<QString> JSONHistoryStore::save()
{
    auto failure = d->saver.save(items());
    if (!failure)
        d->changes.clear();
    return failure;
}

void JSONHistoryStore::saveAsync()
{
    d->saver.changed(std::exchange(d->changes, {}), items());
}

void JSONHistoryStore::flush()
{
    if (d->saver.flush(d->changes, items()))
        d->changes.clear();
}

void JSONHistoryStore::whenRecorded(const QObject* context, std::function<void()> done)
{
    d->saver.whenRecorded([context = QPointer<const QObject>(context), done = std::move(done)] {
        if (context)
            done();
    });
}

void JSONHistoryStore::onSaveFailureChanged(std::function<void(const std::optional<QString>& failure)> callback)
{
    d->saver.onFailureChanged(std::move(callback));
}

} // namespace ClipboardCore
