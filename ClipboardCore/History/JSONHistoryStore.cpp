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

// The parser's own limit. A file of this size holds 500 entries of 8 MB; reading it takes some seconds.
constexpr qint64 largestFile = 0xFFFFFFFF;

/// The order of the history: pinned first, then newest first.
bool before(const ClipItem& a, const ClipItem& b)
{
    return a.isPinned != b.isPinned ? a.isPinned : a.createdAt > b.createdAt;
}

QList<ClipItem> load(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || file.size() > largestFile)
        return {};
    auto items = HistoryCoding::decode(file.readAll()).value_or(QList<ClipItem>());
    std::stable_sort(items.begin(), items.end(), before);
    return items;
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
    QString path;
    qsizetype cap = 0;
    std::chrono::nanoseconds saveDelay;
    QList<ClipItem> items;
    std::optional<SerialQueue::TaskID> pendingSave;
    // Last, so that its thread ends before what it uses does.
    SerialQueue io{"com.tessaly.mac.history-io"};

    [[nodiscard]] auto find(const QUuid& id)
    {
        return std::find_if(items.begin(), items.end(), [&id](const ClipItem& item) { return item.id == id; });
    }
    [[nodiscard]] std::optional<qsizetype> findDuplicate(const ClipItem& item);
    void insertSorted(const ClipItem& item);
    [[nodiscard]] QList<ClipItem> enforceCap();
};

std::optional<qsizetype> JSONHistoryStore::Private::findDuplicate(const ClipItem& item)
{
    const auto found = std::find_if(items.cbegin(), items.cend(), [&item](const ClipItem& entry) {
        return entry.type == item.type && entry.content == item.content;
    });
    return found == items.cend() ? std::nullopt : std::optional(found - items.cbegin());
}

void JSONHistoryStore::Private::insertSorted(const ClipItem& item)
{
    items.insert(std::lower_bound(items.cbegin(), items.cend(), item, before), item);
}

QList<ClipItem> JSONHistoryStore::Private::enforceCap()
{
    QList<ClipItem> removed;
    while (items.size() > cap) {
        const auto oldest =
            std::find_if(items.crbegin(), items.crend(), [](const ClipItem& item) { return !item.isPinned; });
        if (oldest == items.crend())
            break;
        removed.append(items.takeAt(std::distance(oldest, items.crend()) - 1));
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
    d->items = load(d->path);
}

JSONHistoryStore::~JSONHistoryStore() = default;

const QList<ClipItem>& JSONHistoryStore::items() const
{
    return d->items;
}

QList<ClipItem> JSONHistoryStore::add(const ClipItem& item)
{
    if (const auto duplicate = d->findDuplicate(item)) {
        ClipItem entry = d->items.takeAt(*duplicate);
        entry.createdAt = item.createdAt;
        if (item.sourceApp) {
            entry.sourceApp = item.sourceApp;
            entry.bundleID = item.bundleID;
        }
        d->insertSorted(entry);
    } else {
        d->insertSorted(item);
    }
    return d->enforceCap();
}

void JSONHistoryStore::togglePin(const QUuid& id)
{
    const auto found = d->find(id);
    if (found == d->items.end())
        return;
    found->isPinned = !found->isPinned;
    std::stable_sort(d->items.begin(), d->items.end(), before);
}

std::optional<ClipItem> JSONHistoryStore::remove(const QUuid& id)
{
    const auto found = d->find(id);
    if (found == d->items.end())
        return std::nullopt;
    return d->items.takeAt(found - d->items.begin());
}

QList<ClipItem> JSONHistoryStore::removeAll(bool keepingPinned)
{
    const auto firstRemoved = keepingPinned ? std::find_if(d->items.cbegin(), d->items.cend(),
                                                           [](const ClipItem& item) { return !item.isPinned; })
                                            : d->items.cbegin();
    const qsizetype kept = firstRemoved - d->items.cbegin();
    QList<ClipItem> removed = d->items.mid(kept);
    d->items.resize(kept);
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
