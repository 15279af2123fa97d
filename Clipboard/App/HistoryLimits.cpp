#include "HistoryLimits.h"

#include "History/JSONHistoryStore.h"

#include <chrono>
#include <cmath>
#include <utility>

#include <time.h>

namespace Clipboard {

using namespace std::chrono_literals;
using ClipboardCore::ClipItem;

namespace {

// Who counts in days does not count in hours.
constexpr auto interval = 1h;
constexpr double secondsOfDay = 24.0 * 60 * 60;
// What a clock is corrected by without having been wrong, and for how long one that was set is not trusted, in seconds.
constexpr double correction = 60;
constexpr double trial = 60 * 60;

} // namespace

HistoryLimits::HistoryLimits(ClipboardCore::JSONHistoryStore& store, int entries,
                             std::function<void(const QList<ClipItem>&)> evicted, QObject* parent, Clocks clocks)
    : QObject(parent)
    , m_store(store)
    , m_evicted(std::move(evicted))
    , m_entries(entries)
    , m_clocks(std::move(clocks))
    , m_offset(m_clocks.system() - m_clocks.steady())
{
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &HistoryLimits::enforceDays);
}

HistoryLimits::Clocks HistoryLimits::systemClocks()
{
    const auto steady = [] {
        timespec time{};
        clock_gettime(CLOCK_BOOTTIME, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    };
    return {&ClipboardCore::currentTime, steady};
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
    const bool isTrusted = isClockTrusted();
    if (m_days > 0 && isTrusted)
        tell(m_store.evictBefore(m_clocks.system() - m_days * secondsOfDay));
}

bool HistoryLimits::isClockTrusted()
{
    const double now = m_clocks.steady();
    const double offset = m_clocks.system() - now;
    if (std::abs(offset - std::exchange(m_offset, offset)) > correction)
        m_setAt = now;
    return !m_setAt || now - *m_setAt >= trial;
}

void HistoryLimits::tell(const QList<ClipItem>& removed)
{
    if (!removed.isEmpty())
        m_evicted(removed);
}

} // namespace Clipboard
