#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace Clipboard {

/// Turns SIGTERM, SIGINT and SIGHUP into one Qt signal on the main thread, so that ending a session or pressing Ctrl+C
/// saves the history. One instance a process.
class UnixSignals final : public QObject
{
    Q_OBJECT
public:
    explicit UnixSignals(QObject* parent = nullptr);
    ~UnixSignals() override;

signals:
    void quitRequested();

private:
    int m_descriptor = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace Clipboard
