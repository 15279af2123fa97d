#pragma once

#include <QObject>
#include <QVariantMap>

namespace Clipboard {

/// This program on the session bus, as the desktop and another start of it find it: the interface
/// org.freedesktop.Application (Desktop Entry Specification 1.5, "D-Bus Activation"). Main thread only.
class ApplicationService final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    using QObject::QObject;

    /// Asks the bus for the program's name, without waiting for the answer. Nothing happens in a session without a bus.
    void announce();

    /// True when a process has the name.
    [[nodiscard]] static bool isAnnounced();
    /// What became of a wish to the process that has the name.
    enum class Answer { done, noBus, noAnswer };
    /// Asks the running process to show itself. One that is just starting is waited for, one that hangs is not, beyond
    /// a few seconds.
    [[nodiscard]] static Answer activateRunning();

public slots:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData); // as the bus names it

signals:
    void activated();
};

} // namespace Clipboard
