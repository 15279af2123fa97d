#include "WatchFunction.h"

#include "BusEntry.h"
#include "EntryPrinter.h"
#include "Functions.h"
#include "Terminal.h"

#include <QDBusArgument>

namespace Clipboard::Command {

using namespace Qt::StringLiterals;

ChangePrinter::ChangePrinter(const BusClient& client)
    : m_client(client)
    , m_program(Bus::serviceName, client.bus(), QDBusServiceWatcher::WatchForUnregistration)
{
    connect(&m_program, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        end({ExitCode::notRunning, u"the program has ended"_s});
    });
    QDBusConnection bus = client.bus();
    const auto hear = [this, &bus](const QString& signal, const char* slot) {
        bus.connect(Bus::serviceName, Bus::objectPath, Bus::interfaceName, signal, this, slot);
    };
    hear(u"EntryAdded"_s, SLOT(entryAdded(QString, QString)));
    hear(u"EntryChanged"_s, SLOT(entryChanged(QString)));
    hear(u"EntryRemoved"_s, SLOT(entryRemoved(QString)));
    hear(u"Paused"_s, SLOT(paused(bool)));
}

Failure ChangePrinter::run()
{
    print({{u"event"_s, u"watching"_s}});
    m_loop.exec();
    return m_failure;
}

void ChangePrinter::entryAdded(const QString& id, const QString& /*type*/)
{
    printEntry(u"added"_s, id);
}

void ChangePrinter::entryChanged(const QString& id)
{
    printEntry(u"changed"_s, id);
}

void ChangePrinter::entryRemoved(const QString& id)
{
    print({{u"event"_s, u"removed"_s}, {u"id"_s, id}});
}

void ChangePrinter::paused(bool isPaused)
{
    print({{u"event"_s, isPaused ? u"paused"_s : u"resumed"_s}});
}

void ChangePrinter::printEntry(const QString& event, const QString& id)
{
    QJsonObject change{{u"event"_s, event}, {u"id"_s, id}};
    const Answer answer = m_client.call(u"Find"_s, {id});
    if (const auto* values = std::get_if<QVariantList>(&answer)) // it may be gone again
        change.insert(u"entry"_s, entryObject(qdbus_cast<Bus::BusEntry>(values->value(0))));
    print(change);
}

void ChangePrinter::print(const QJsonObject& change)
{
    if (!Terminal::printLine(compactJSON(change)))
        end(Functions::cannotWrite());
}

void ChangePrinter::end(const Failure& failure)
{
    m_failure = failure;
    QMetaObject::invokeMethod(&m_loop, &QEventLoop::quit, Qt::QueuedConnection); // it may not run yet
}

Functions::Outcome Functions::watch(const CommandLine& /*line*/, const BusClient& client)
{
    // Heard of from here on; and told at once when nobody is there.
    ChangePrinter printer(client);
    if (Outcome failure = failureIn(client.call(u"List"_s, {QVariantMap{{u"limit"_s, 0U}}})))
        return failure;
    return printer.run();
}

} // namespace Clipboard::Command
