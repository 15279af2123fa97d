#pragma once

#include "History/ClipItem.h"

#include <QList>

namespace ClipboardCore {

/// The entries of the history in their order, pinned first, then newest first; no two of them have the same type and
/// content, unless a file brought them in.
class EntryList final
{
public:
    EntryList() = default;
    /// Sorts; entries that compare equal keep their order.
    explicit EntryList(const QList<ClipItem>& items);

    [[nodiscard]] const QList<ClipItem>& items() const { return m_items; }

    [[nodiscard]] qsizetype find(const QUuid& id) const; // -1 when there is none
    /// The first entry of equal type and content; -1 when there is none.
    [[nodiscard]] qsizetype findEqual(const ClipItem& item) const;

    /// In front of the entries that compare equal.
    void insert(const ClipItem& item);
    ClipItem take(qsizetype position);
    /// A new time and number of further files, and a new source when there is one. Where the entry then stands follows
    /// from it.
    void touch(qsizetype position, double createdAt, const std::optional<QString>& sourceApp,
               const std::optional<QString>& bundleID, int furtherFiles);
    void setPinned(qsizetype position, bool isPinned);
    /// Keeps the first `count` entries and returns the others.
    QList<ClipItem> truncate(qsizetype count);

    /// The last one that is not pinned, other than `spared`; -1 when there is none.
    [[nodiscard]] qsizetype oldestUnpinned(const QUuid& spared = {}) const;
    /// All contents together.
    [[nodiscard]] qint64 byteCount() const;

private:
    void insert(const ClipItem& item, size_t key);

    QList<ClipItem> m_items;
    // A number for each of them: a new text is compared with those of the same number alone.
    QList<size_t> m_keys;
};

} // namespace ClipboardCore
