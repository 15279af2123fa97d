#pragma once

#include "History/ClipItem.h"

#include <QObject>
#include <QTimer>

#include <functional>

namespace ClipboardCore {
class JSONHistoryStore;
}

namespace Clipboard {

/// Keeps the history within what the user wants kept: so many entries, of so many days. Main thread only.
class HistoryLimits final : public QObject
{
    Q_OBJECT
public:
    /// `entries` is the store's cap. `evicted` is called after entries have gone, with those.
    HistoryLimits(ClipboardCore::JSONHistoryStore& store, int entries,
                  std::function<void(const QList<ClipboardCore::ClipItem>&)> evicted, QObject* parent = nullptr);

    /// From now on, and at once; 0 days are no limit.
    void set(int entries, int days);
    /// Lets go what has become too old since the last time.
    void enforceDays();

private:
    void tell(const QList<ClipboardCore::ClipItem>& removed);

    ClipboardCore::JSONHistoryStore& m_store;
    std::function<void(const QList<ClipboardCore::ClipItem>&)> m_evicted;
    QTimer m_timer; // runs only while there is a limit of days
    int m_entries;
    int m_days = 0;
};

} // namespace Clipboard
