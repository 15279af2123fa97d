#include "HistoryLimits.h"

#include "History/JSONHistoryStore.h"

#include <chrono>
#include <utility>

namespace Clipboard {

using namespace std::chrono_literals;
using ClipboardCore::ClipItem;

namespace {

// Who counts in days does not count in hours.
constexpr auto interval = 1h;
constexpr double secondsOfDay = 24.0 * 60 * 60;

} // namespace

HistoryLimits::HistoryLimits(ClipboardCore::JSONHistoryStore& store, int entries,
                             std::function<void(const QList<ClipItem>&)> evicted, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_evicted(std::move(evicted))
    , m_entries(entries)
{
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &HistoryLimits::enforceDays);
}

void HistoryLimits::set(int entries, int days)
{
    // A file that holds more than was ever chosen is left as it is until the next copy.
    if (std::exchange(m_entries, entries) != entries)
        tell(m_store.setCap(entries));
    m_days = days;
    if (days > 0)
        m_timer.start();
    else
        m_timer.stop();
    enforceDays();
}

void HistoryLimits::enforceDays()
{
    if (m_days > 0)
        tell(m_store.evictOlderThan(m_days * secondsOfDay));
}

void HistoryLimits::tell(const QList<ClipItem>& removed)
{
    if (!removed.isEmpty())
        m_evicted(removed);
}

} // namespace Clipboard
