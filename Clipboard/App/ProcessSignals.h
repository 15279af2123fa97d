#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace Clipboard {

/// The signals of the operating system, as calls on the main thread. One instance a process.
class ProcessSignals final : public QObject
{
    Q_OBJECT
public:
    /// From here on the signals are kept, to be delivered when an event loop runs. Call it first of all: until then
    /// each of them kills the process.
    static void install();

    /// Delivers them; needs the application object.
    explicit ProcessSignals(QObject* parent = nullptr);

signals:
    /// SIGTERM, SIGINT or SIGHUP.
    void quitRequested();

private:
    void deliver();

    QSocketNotifier m_notifier;
};

} // namespace Clipboard
