#pragma once

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

namespace Clipboard {

/// What one run of the worker program is to do. The limit counts from the moment of asking.
struct WorkerTask
{
    QStringList arguments;
    QByteArray input;
    std::chrono::milliseconds limit{};
};

/// One run of the worker program, which may do anything: crash, hang, write nonsense or without end. Nothing here waits
/// for it.
class WorkerProcess final : public QObject
{
    Q_OBJECT
public:
    /// Longer output is nonsense: a page of text has a few thousand bytes, the densest screenshot a hundred thousand.
    static constexpr qsizetype maxOutputBytes = qsizetype{1024} * 1024;

    /// The time limit begins here; the program is only started by start().
    WorkerProcess(QString program, WorkerTask task, QObject* parent);
    /// Ends the program if it still runs and waits for that, which takes as long as the system needs to kill it.
    ~WorkerProcess() override;
    Q_DISABLE_COPY_MOVE(WorkerProcess)

    [[nodiscard]] bool isStarted() const { return m_isStarted; }
    void start();

signals:
    /// Once: nothing runs any more.
    void ended();
    /// Once, from the event loop: what the program wrote; nothing unless it exited with 0 within the limit and
    /// wrote a bounded amount of valid UTF-8.
    void answered(const std::optional<QString>& output);

private:
    void takeOutput();
    void giveUp();
    void finish(const std::optional<QString>& output);
    void answer(const std::optional<QString>& output);
    /// Reports from the event loop: who hears it may destroy this object, which the process and the timer would not
    /// survive in the middle of their own signals.
    void later(const std::function<void()>& report);

    QString m_program;
    WorkerTask m_task;
    QProcess m_process;
    QTimer m_limit;
    QByteArray m_output;
    bool m_isStarted = false;
    bool m_isAnswered = false;
};

} // namespace Clipboard
