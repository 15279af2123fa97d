#include "BusService.h"

#include "BusEntry.h"
#include "BusNames.h"
#include "HistoryViewModel.h"
#include "Introspection.h"
#include "PauseTimer.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QLoggingCategory>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <array>
#include <utility>

namespace Clipboard::Bus {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(log, "tessaly.bus")

} // namespace

BusService::BusService(Program program, QObject* parent)
    : QDBusVirtualObject(parent)
    , m_program(std::move(program))
    , m_intake(m_program.imagesDir)
{
    m_queries.setMaxThreadCount(1);
    registerBusEntry();
}

BusService::~BusService()
{
    m_queries.waitForDone();
}

void BusService::announce()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qCInfo(log, "There is no session bus: neither another start of the program nor its commands reach this one.");
        return;
    }
    connect(&m_watch, &EntryWatch::added, this, [this](const QUuid& id, ClipboardCore::ClipType type) {
        tell(u"EntryAdded"_s, {idText(id), QString(ClipboardCore::rawValue(type))});
    });
    connect(&m_watch, &EntryWatch::changed, this, [this](const QUuid& id) { tell(u"EntryChanged"_s, {idText(id)}); });
    connect(&m_watch, &EntryWatch::removed, this, [this](const QUuid& id) { tell(u"EntryRemoved"_s, {idText(id)}); });
    const auto follow = [this] {
        // Nobody is told of what could be lost yet.
        m_program.store.whenRecorded(this, [this, items = m_program.history.items()] { m_watch.follow(items); });
    };
    connect(&m_program.history, &HistoryViewModel::itemsChanged, this, follow);
    follow();
    connect(&m_program.pause, &PauseTimer::changed, this, [this] { tell(u"Paused"_s, {m_program.pause.isPaused()}); });

    bus.registerVirtualObject(objectPath, this);
    // In a queue, when a process that is ending still has the name.
    QDBusMessage request = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                          u"org.freedesktop.DBus"_s, u"RequestName"_s);
    request << QString(serviceName) << 0U;
    bus.asyncCall(request);
}

const BusService::Entry* BusService::find(const QDBusMessage& message)
{
    static constexpr QLatin1String desktop = applicationInterface;
    static constexpr QLatin1String own = interfaceName;
    static constexpr std::array entries{
        Entry{desktop, "Activate"_L1, "a{sv}"_L1, &BusService::activate},
        Entry{desktop, "Open"_L1, "asa{sv}"_L1, &BusService::open},
        Entry{desktop, "ActivateAction"_L1, "sava{sv}"_L1, &BusService::activateAction},
        Entry{own, "Toggle"_L1, ""_L1, &BusService::toggle},
        Entry{own, "Show"_L1, ""_L1, &BusService::activate},
        Entry{own, "Hide"_L1, ""_L1, &BusService::hide},
        Entry{own, "Quit"_L1, ""_L1, &BusService::quit},
        Entry{own, "List"_L1, "a{sv}"_L1, &BusService::list},
        Entry{own, "Find"_L1, "s"_L1, &BusService::findEntry},
        Entry{own, "Get"_L1, "ss"_L1, &BusService::get},
        Entry{own, "Add"_L1, "sv"_L1, &BusService::add},
        Entry{own, "Copy"_L1, "s"_L1, &BusService::copy},
        Entry{own, "Paste"_L1, "s"_L1, &BusService::paste},
        Entry{own, "Pin"_L1, "s"_L1, &BusService::pin},
        Entry{own, "Unpin"_L1, "s"_L1, &BusService::unpin},
        Entry{own, "Delete"_L1, "s"_L1, &BusService::remove},
        Entry{own, "Clear"_L1, "b"_L1, &BusService::clear},
        Entry{own, "Actions"_L1, "s"_L1, &BusService::listActions},
        Entry{own, "Run"_L1, "ss"_L1, &BusService::run},
        Entry{own, "Annotate"_L1, "s"_L1, &BusService::annotate},
        Entry{own, "Pause"_L1, "u"_L1, &BusService::pause},
        Entry{own, "Resume"_L1, ""_L1, &BusService::resume},
        Entry{own, "Status"_L1, ""_L1, &BusService::status},
        Entry{own, "ShowPreferences"_L1, ""_L1, &BusService::showPreferences},
    };
    const auto isCalled = [&message](const Entry& entry) {
        return entry.name == message.member() &&
               (message.interface().isEmpty() || entry.interface == message.interface());
    };
    const auto* const found = std::ranges::find_if(entries, isCalled);
    return found == entries.end() ? nullptr : found;
}

bool BusService::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/)
{
    const Entry* entry = find(message);
    if (!entry)
        return false; // the bus library says so
    if (entry->signature == message.signature())
        (this->*entry->method)(message);
    else
        refuse(message, {QDBusError::errorString(QDBusError::InvalidArgs),
                         u"%1 takes \"%2\""_s.arg(message.member(), entry->signature)});
    return true;
}

QString BusService::introspect(const QString& /*path*/) const
{
    return introspection();
}

void BusService::answer(const QDBusMessage& message, const QVariantList& values)
{
    if (message.isReplyRequired())
        QDBusConnection::sessionBus().send(message.createReply(values));
}

void BusService::answerWhenRecorded(const QDBusMessage& message, const QVariantList& values)
{
    m_program.store.whenRecorded(this, [this, message, values] { answer(message, values); });
}

void BusService::refuse(const QDBusMessage& message, const Failure& failure)
{
    if (message.isReplyRequired())
        QDBusConnection::sessionBus().send(message.createErrorReply(failure.name, failure.text));
}

void BusService::tell(const QString& signal, const QVariantList& values)
{
    QDBusMessage message = QDBusMessage::createSignal(objectPath, interfaceName, signal);
    message.setArguments(values);
    QDBusConnection::sessionBus().send(message);
}

// ── org.freedesktop.Application, and the panel

void BusService::activate(const QDBusMessage& message)
{
    answer(message);
    m_program.show();
}

void BusService::open(const QDBusMessage& message)
{
    activate(message); // no file is opened with the program
}

void BusService::activateAction(const QDBusMessage& message)
{
    // Those of the desktop entry.
    const QString action = message.arguments().constFirst().toString();
    if (action == "show"_L1)
        m_program.show();
    else if (action == "preferences"_L1)
        m_program.preferences();
    else if (action == "pause"_L1)
        m_program.pause.pause(std::nullopt);
    else if (action == "resume"_L1)
        m_program.pause.resume();
    else
        return refuse(message, {Error::noSuchAction, u"there is no action '%1'"_s.arg(action)});
    answer(message);
}

void BusService::toggle(const QDBusMessage& message)
{
    answer(message);
    m_program.toggle();
}

void BusService::hide(const QDBusMessage& message)
{
    m_program.hide();
    answer(message);
}

void BusService::pause(const QDBusMessage& message)
{
    const uint seconds = message.arguments().constFirst().toUInt();
    m_program.pause.pause(seconds == 0 ? std::nullopt : std::optional(std::chrono::seconds(seconds)));
    answer(message);
}

void BusService::resume(const QDBusMessage& message)
{
    m_program.pause.resume();
    answer(message);
}

void BusService::status(const QDBusMessage& message)
{
    m_program.status([this, guard = QPointer(this), message](const QVariantMap& status) {
        if (guard)
            answer(message, {status});
    });
}

void BusService::showPreferences(const QDBusMessage& message)
{
    answer(message);
    m_program.preferences();
}

void BusService::quit(const QDBusMessage& message)
{
    answer(message);
    // The end takes the bus with it: the answer is on its way first.
    QTimer::singleShot(0, this, [this] { m_program.quit(); });
}

} // namespace Clipboard::Bus
