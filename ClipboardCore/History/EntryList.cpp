#include "History/EntryList.h"

#include "Support/CanonicalText.h"

#include <algorithm>
#include <numeric>

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

} // namespace

EntryList::EntryList(const QList<ClipItem>& items)
    : m_items(items)
    , m_keys(items.size())
{
    std::stable_sort(m_items.begin(), m_items.end(), before);
    std::transform(m_items.cbegin(), m_items.cend(), m_keys.begin(), duplicateKey);
}

qsizetype EntryList::find(const QUuid& id) const
{
    const auto found = std::ranges::find(m_items, id, &ClipItem::id);
    return found == m_items.cend() ? -1 : found - m_items.cbegin();
}

qsizetype EntryList::findEqual(const ClipItem& item) const
{
    const size_t key = duplicateKey(item);
    for (qsizetype i = m_keys.indexOf(key); i >= 0; i = m_keys.indexOf(key, i + 1))
        if (m_items[i].type == item.type && m_items[i].content == item.content)
            return i;
    return -1;
}

void EntryList::insert(const ClipItem& item)
{
    insert(item, duplicateKey(item));
}

void EntryList::insert(const ClipItem& item, size_t key)
{
    const qsizetype position = std::lower_bound(m_items.cbegin(), m_items.cend(), item, before) - m_items.cbegin();
    m_items.insert(position, item);
    m_keys.insert(position, key);
}

ClipItem EntryList::take(qsizetype position)
{
    m_keys.removeAt(position);
    return m_items.takeAt(position);
}

void EntryList::touch(qsizetype position, double createdAt, const std::optional<QString>& sourceApp,
                      const std::optional<QString>& bundleID, int furtherFiles)
{
    const size_t key = m_keys[position];
    ClipItem entry = take(position);
    entry.createdAt = createdAt;
    entry.furtherFiles = furtherFiles;
    if (sourceApp) {
        entry.sourceApp = sourceApp;
        entry.bundleID = bundleID;
    }
    insert(entry, key);
}

void EntryList::setPinned(qsizetype position, bool isPinned)
{
    m_items[position].isPinned = isPinned;
    *this = EntryList(m_items);
}

QList<ClipItem> EntryList::truncate(qsizetype count)
{
    QList<ClipItem> removed = m_items.sliced(count);
    m_items.resize(count);
    m_keys.resize(count);
    return removed;
}

qsizetype EntryList::oldestUnpinned(const QUuid& spared) const
{
    const auto oldest = std::find_if(m_items.crbegin(), m_items.crend(),
                                     [&spared](const ClipItem& item) { return !item.isPinned && item.id != spared; });
    return std::distance(oldest, m_items.crend()) - 1;
}

qint64 EntryList::byteCount() const
{
    return std::accumulate(m_items.begin(), m_items.end(), qint64(0),
                           [](qint64 sum, const ClipItem& item) { return sum + item.content.byteCount(); });
}

} // namespace ClipboardCore
