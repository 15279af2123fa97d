#pragma once

#include "History/ClipItem.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

namespace ClipboardCore {
class JSONHistoryStore;
}

namespace Clipboard {

/// Keeps the history within what the user wants kept: so many entries, of so many days. A clock that was just set may
/// be wrong, and no entry goes before it has been right for an hour. Main thread only.
class HistoryLimits final : public QObject
{
    Q_OBJECT
public:
    /// In seconds.
    struct Clocks
    {
        std::function<double()> system; // in the unit of ClipItem::createdAt
        std::function<double()> steady; // nobody sets it, and it goes on while the machine sleeps
    };
    [[nodiscard]] static Clocks systemClocks();

    /// `entries` is the store's cap. `evicted` is called after entries have gone, with those.
    HistoryLimits(ClipboardCore::JSONHistoryStore& store, int entries,
                  std::function<void(const QList<ClipboardCore::ClipItem>&)> evicted, QObject* parent = nullptr,
                  Clocks clocks = systemClocks());

    /// From now on, and at once; 0 days are no limit.
    void set(int entries, int days);
    /// Lets go what has become too old since the last time.
    void enforceDays();

private:
    [[nodiscard]] bool isClockTrusted();
    void tell(const QList<ClipboardCore::ClipItem>& removed);

    ClipboardCore::JSONHistoryStore& m_store;
    std::function<void(const QList<ClipboardCore::ClipItem>&)> m_evicted;
    QTimer m_timer; // runs only while there is a limit of days
    int m_entries;
    int m_days = 0;
    Clocks m_clocks;
    double m_offset; // of the system's clock beside the steady one
    std::optional<double> m_setAt;
};

} // namespace Clipboard
