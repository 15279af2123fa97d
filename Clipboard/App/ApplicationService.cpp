#include "ApplicationService.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QTimer>

#include <chrono>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(log, "tessaly.application")

constexpr QLatin1String name("com.tessaly.Tessaly");
constexpr QLatin1String path("/com/tessaly/Tessaly");
constexpr QLatin1String interface("org.freedesktop.Application");

// A process that has just taken the lock is on the bus a tenth of a second later; a busy machine takes its time.
// Whoever started the program a second time looks at a terminal or an empty screen meanwhile.
constexpr std::chrono::seconds answerLimit{5};

/// One wish to whoever has the name, now or within the limit.
class Activation final : public QObject
{
public:
    explicit Activation(const QDBusConnection& bus)
        : m_bus(bus)
        , m_arrival(name, bus, QDBusServiceWatcher::WatchForRegistration)
    {
        connect(&m_arrival, &QDBusServiceWatcher::serviceRegistered, this, &Activation::ask);
    }

    [[nodiscard]] ApplicationService::Answer run()
    {
        ask();
        QTimer::singleShot(answerLimit, &m_loop, &QEventLoop::quit);
        m_loop.exec();
        return m_answer;
    }

private:
    void ask()
    {
        QDBusMessage wish = QDBusMessage::createMethodCall(name, path, interface, u"Activate"_s);
        wish.setAutoStartService(false);
        wish << QVariantMap();
        const auto* reply = new QDBusPendingCallWatcher(m_bus.asyncCall(wish), this);
        connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
            const QDBusError::ErrorType error = reply->error().type();
            // It may be about to take the name.
            if (error == QDBusError::ServiceUnknown || reply->error().name().endsWith("NameHasNoOwner"_L1))
                return;
            if (error == QDBusError::NoError)
                m_answer = ApplicationService::Answer::done;
            m_loop.quit();
        });
    }

    QDBusConnection m_bus;
    QDBusServiceWatcher m_arrival;
    QEventLoop m_loop;
    ApplicationService::Answer m_answer = ApplicationService::Answer::noAnswer;
};

} // namespace

void ApplicationService::announce()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qCInfo(log, "There is no session bus: another start of the program cannot open this one's panel.");
        return;
    }
    bus.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
    // In a queue, when a process that is ending still has the name.
    QDBusMessage request = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                          u"org.freedesktop.DBus"_s, u"RequestName"_s);
    request << QString(name) << 0U;
    bus.asyncCall(request);
}

bool ApplicationService::isAnnounced()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.interface()->isServiceRegistered(name);
}

ApplicationService::Answer ApplicationService::activateRunning()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? Activation(bus).run() : Answer::noBus;
}

void ApplicationService::Activate(const QVariantMap& /*platformData*/)
{
    emit activated();
}

} // namespace Clipboard
