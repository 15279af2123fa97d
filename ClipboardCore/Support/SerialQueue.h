#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace ClipboardCore {

/// Runs tasks one after the other, in the order in which they fall due, on one background thread.
///
/// The thread starts with the first task and sleeps while nothing is due. Tasks may be added from any thread.
class SerialQueue final
{
public:
    using Task = std::function<void()>;
    enum class TaskID : quint64 {};

    /// What waits on the disk or prepares a search gives way to whatever the user does.
    enum class Priority { utility, normal };

    /// `label` names the thread in debuggers, by its last 15 bytes.
    explicit SerialQueue(QByteArray label, Priority priority = Priority::utility);
    /// Waits for the running task; those that have not started never do.
    ~SerialQueue();
    Q_DISABLE_COPY_MOVE(SerialQueue)

    TaskID async(Task task, std::chrono::nanoseconds delay = {});
    /// A task that has not started never runs; for any other this does nothing.
    void cancel(TaskID id);
    /// Runs a task after those that are already due and returns when it has run. Not to be called from a task.
    void sync(const Task& task);
    /// Returns when every task that is running or already due has run. Not to be called from a task of its own.
    void drain();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ClipboardCore
