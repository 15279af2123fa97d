#pragma once

#include <QString>

#include <sys/types.h>

namespace Clipboard {

/// Keeps a second process from writing the same history. The kernel drops the lock with the process, however that ends.
class InstanceLock final
{
public:
    /// Tries to take the lock `file`. Where locks are not supported, there is none and the program runs.
    explicit InstanceLock(const QString& file);
    ~InstanceLock();
    Q_DISABLE_COPY_MOVE(InstanceLock)

    /// The process that has the lock; 0 when it is this one.
    [[nodiscard]] pid_t holder() const { return m_holder; }

private:
    int m_file = -1;
    pid_t m_holder = 0;
};

} // namespace Clipboard
