#include "History/JSONHistoryStore.h"

#include "History/HistoryCoding.h"
#include "Support/AtomicFile.h"
#include "Support/CanonicalText.h"
#include "Support/SerialQueue.h"

#include <QFile>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace ClipboardCore {

namespace {

/// The order of the history: pinned first, then newest first.
bool before(const ClipItem& a, const ClipItem& b)
{
    return a.isPinned != b.isPinned ? a.isPinned : a.createdAt > b.createdAt;
}

size_t duplicateKey(const ClipItem& item)
{
    return CanonicalText::key(item.content.utf8(), static_cast<size_t>(item.type));
}

/// The file's content; empty when it cannot be read.
QByteArray read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || file.size() > HistoryCoding::largestDocument)
        return {};
    QByteArray content;
    content.reserve(file.size() + HistoryCoding::decodePadding);
    content.resize(file.size());
    qsizetype done = 0;
    while (done < content.size()) {
        const qint64 count = file.read(content.data() + done, content.size() - done);
        if (count <= 0)
            return {};
        done += count;
    }
    return content;
}

std::optional<QString> write(const QList<ClipItem>& items, const QString& path)
{
    const auto isFinite = [](const ClipItem& item) { return std::isfinite(item.createdAt); };
    if (!std::all_of(items.begin(), items.end(), isFinite))
        return u"An entry's time is not a number"_s;
    AtomicFile file(path);
    HistoryCoding::encode(items, [&file](QByteArrayView bytes) { file.append(bytes); });
    return file.commit();
}

} // namespace

struct JSONHistoryStore::Private
{
    [[nodiscard]] qsizetype find(const QUuid& id) const; // -1 when there is none
    [[nodiscard]] qsizetype findDuplicate(const ClipItem& item, size_t key) const;
    void setItems(const QList<ClipItem>& newItems);
    void insertSorted(const ClipItem& item, size_t key);
    ClipItem take(qsizetype position);
    [[nodiscard]] QList<ClipItem> enforceCap();

    QString path;
    qsizetype cap = 0;
    std::chrono::nanoseconds saveDelay{};
    QList<ClipItem> items;
    // duplicateKey() of each of `items`: a new text is compared with those of the same key alone.
    QList<size_t> keys;
    std::optional<SerialQueue::TaskID> pendingSave;
    // Last, so that its thread ends before what it uses does.
    SerialQueue io{"com.tessaly.mac.history-io"};
};

qsizetype JSONHistoryStore::Private::find(const QUuid& id) const
{
    const auto found =
        std::find_if(items.cbegin(), items.cend(), [&id](const ClipItem& item) { return item.id == id; });
    return found == items.cend() ? -1 : found - items.cbegin();
}

qsizetype JSONHistoryStore::Private::findDuplicate(const ClipItem& item, size_t key) const
{
    for (qsizetype i = keys.indexOf(key); i >= 0; i = keys.indexOf(key, i + 1))
        if (items[i].type == item.type && items[i].content == item.content)
            return i;
    return -1;
}

void JSONHistoryStore::Private::setItems(const QList<ClipItem>& newItems)
{
    items = newItems;
    std::stable_sort(items.begin(), items.end(), before);
    keys.resize(items.size());
    std::transform(items.cbegin(), items.cend(), keys.begin(), duplicateKey);
}

void JSONHistoryStore::Private::insertSorted(const ClipItem& item, size_t key)
{
    const qsizetype position = std::lower_bound(items.cbegin(), items.cend(), item, before) - items.cbegin();
    items.insert(position, item);
    keys.insert(position, key);
}

ClipItem JSONHistoryStore::Private::take(qsizetype position)
{
    keys.removeAt(position);
    return items.takeAt(position);
}

QList<ClipItem> JSONHistoryStore::Private::enforceCap()
{
    QList<ClipItem> removed;
    while (items.size() > cap) {
        const auto oldest =
            std::find_if(items.crbegin(), items.crend(), [](const ClipItem& item) { return !item.isPinned; });
        if (oldest == items.crend())
            break;
        removed.append(take(std::distance(oldest, items.crend()) - 1));
    }
    return removed;
}

JSONHistoryStore::JSONHistoryStore(QString path, qsizetype cap, double saveDelaySeconds)
    : d(std::make_unique<Private>())
{
    using namespace std::chrono;
    d->path = std::move(path);
    d->cap = cap;
    d->saveDelay = duration_cast<nanoseconds>(duration<double>(saveDelaySeconds));
    d->setItems(HistoryCoding::decode(read(d->path)).value_or(QList<ClipItem>()));
}

JSONHistoryStore::~JSONHistoryStore() = default;

const QList<ClipItem>& JSONHistoryStore::items() const
{
    return d->items;
}

QList<ClipItem> JSONHistoryStore::add(const ClipItem& item)
{
    const size_t key = duplicateKey(item);
    if (const qsizetype duplicate = d->findDuplicate(item, key); duplicate >= 0) {
        ClipItem entry = d->take(duplicate);
        entry.createdAt = item.createdAt;
        if (item.sourceApp) {
            entry.sourceApp = item.sourceApp;
            entry.bundleID = item.bundleID;
        }
        d->insertSorted(entry, key);
    } else {
        d->insertSorted(item, key);
    }
    return d->enforceCap();
}

void JSONHistoryStore::togglePin(const QUuid& id)
{
    const qsizetype position = d->find(id);
    if (position < 0)
        return;
    d->items[position].isPinned = !d->items[position].isPinned;
    d->setItems(d->items);
}

std::optional<ClipItem> JSONHistoryStore::remove(const QUuid& id)
{
    const qsizetype position = d->find(id);
    return position < 0 ? std::nullopt : std::optional(d->take(position));
}

QList<ClipItem> JSONHistoryStore::removeAll(bool keepingPinned)
{
    const auto firstUnpinned =
        std::find_if(d->items.cbegin(), d->items.cend(), [](const ClipItem& item) { return !item.isPinned; });
    const qsizetype kept = keepingPinned ? firstUnpinned - d->items.cbegin() : 0;
    QList<ClipItem> removed = d->items.sliced(kept);
    d->items.resize(kept);
    d->keys.resize(kept);
    return removed;
}

std::optional<QString> JSONHistoryStore::save()
{
    return write(d->items, d->path);
}

void JSONHistoryStore::saveAsync()
{
    if (d->pendingSave)
        d->io.cancel(*d->pendingSave);
    d->pendingSave = d->io.async(
        [items = d->items, path = d->path] {
            // The history in memory is whole, and the next save tries again.
            static_cast<void>(write(items, path));
        },
        d->saveDelay);
}

void JSONHistoryStore::flush()
{
    const bool wasRequested = d->pendingSave.has_value();
    if (wasRequested)
        d->io.cancel(*d->pendingSave);
    d->pendingSave.reset();
    d->io.drain();
    if (wasRequested)
        static_cast<void>(save());
}

} // namespace ClipboardCore
