#pragma once

#include "BusClient.h"

#include <QDBusServiceWatcher>
#include <QEventLoop>
#include <QJsonObject>
#include <QObject>
#include <QString>

#include <optional>

namespace Clipboard::Command {

/// Prints what the running program tells of its history, a line of JSON each.
class ChangePrinter final : public QObject
{
    Q_OBJECT
public:
    explicit ChangePrinter(const BusClient& client);

    /// Returns when the program has ended, or when nobody reads the output any more.
    [[nodiscard]] Failure run();

private slots: // by name, as the signals of the bus need it
    void entryAdded(const QString& id, const QString& type);
    void entryChanged(const QString& id);
    void entryRemoved(const QString& id);
    void paused(bool isPaused);

private:
    void printEntry(const QString& event, const QString& id);
    void print(const QJsonObject& change);
    void end(const Failure& failure);

    const BusClient& m_client;
    QDBusServiceWatcher m_program;
    QEventLoop m_loop;
    Failure m_failure;
};

} // namespace Clipboard::Command
