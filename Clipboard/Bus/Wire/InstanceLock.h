#pragma once

#include <QByteArray>
#include <QString>

namespace Clipboard::Bus {

/// Keeps a second process from writing the same history. The kernel drops the lock with the process, however that ends.
class InstanceLock final
{
public:
    enum class State { held, heldByAnother, unsupported };

    /// Tries to take the lock `file` and writes into it which display this process serves, for the next one to read.
    InstanceLock(const QString& file, QByteArray display);
    ~InstanceLock();
    Q_DISABLE_COPY_MOVE(InstanceLock)

    /// Takes it anew where another file stands in its place, or none.
    void renew();
    /// Unsupported: some network file systems have no locks.
    [[nodiscard]] State state() const { return m_state; }
    /// Whether a process keeps the lock `file`, so that one is running or about to.
    [[nodiscard]] static bool isHeld(const QString& file);
    /// The display that the holder serves; empty when it did not tell.
    [[nodiscard]] QByteArray holdersDisplay() const;

private:
    void take();

    QByteArray m_path;
    QByteArray m_display;
    int m_file = -1;
    State m_state = State::unsupported;
};

} // namespace Clipboard::Bus
