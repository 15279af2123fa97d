#pragma once

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>

namespace Clipboard {

/// Whether recording pauses, and until when. It begins anew with every start of the program. Main thread only.
class PauseTimer final : public QObject
{
    Q_OBJECT
public:
    /// Longer than any meeting, within what a timer counts.
    static constexpr std::chrono::hours longest{24 * 7};

    explicit PauseTimer(QObject* parent = nullptr);

    /// Pauses for so long, longest at most, or until resume() when there is no duration.
    void pause(std::optional<std::chrono::seconds> duration);
    void resume();
    [[nodiscard]] bool isPaused() const { return m_isPaused; }
    /// When recording goes on by itself; nothing when it does not.
    [[nodiscard]] std::optional<QDateTime> end() const;

signals:
    void changed();

private:
    QTimer m_timer;
    std::optional<QDateTime> m_end;
    bool m_isPaused = false;
};

} // namespace Clipboard
