#include "PauseTimer.h"

#include <algorithm>

namespace Clipboard {

PauseTimer::PauseTimer(QObject* parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &PauseTimer::resume);
}

void PauseTimer::pause(std::optional<std::chrono::seconds> duration)
{
    m_isPaused = true;
    m_timer.stop();
    m_end.reset();
    if (duration) {
        const std::chrono::seconds bounded = std::min<std::chrono::seconds>(*duration, longest);
        m_timer.start(bounded);
        m_end = QDateTime::currentDateTimeUtc().addSecs(bounded.count());
    }
    emit changed();
}

void PauseTimer::resume()
{
    m_timer.stop();
    m_end.reset();
    m_isPaused = false;
    emit changed();
}

std::optional<QDateTime> PauseTimer::end() const
{
    return m_end;
}

} // namespace Clipboard
