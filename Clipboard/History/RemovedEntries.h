#pragma once

#include "History/ClipItem.h"

#include <QList>

namespace ClipboardCore {
class JSONHistoryStore;
}

namespace Clipboard {

/// What was removed and can still be brought back, the latest removal first. A picture's file stays for as long as an
/// entry of the history or one in here shows it. Main thread only.
class RemovedEntries
{
public:
    /// The store outlives it.
    explicit RemovedEntries(const ClipboardCore::JSONHistoryStore& store)
        : m_store(store)
    {
    }

    void keep(const QList<ClipboardCore::ClipItem>& entries) { m_removals.append(entries); }
    [[nodiscard]] bool isEmpty() const { return m_removals.isEmpty(); }
    /// The entries of the last removal, which is kept no longer. Precondition: not isEmpty().
    [[nodiscard]] QList<ClipboardCore::ClipItem> takeLast() { return m_removals.takeLast(); }
    /// Nothing that was removed can be brought back from now on.
    void forget();

    /// Has the picture files of entries that are gone for good removed, except those that are still shown.
    void release(const QList<ClipboardCore::ClipItem>& entries) const;

private:
    const ClipboardCore::JSONHistoryStore& m_store;
    QList<QList<ClipboardCore::ClipItem>> m_removals; // the latest last
};

} // namespace Clipboard
