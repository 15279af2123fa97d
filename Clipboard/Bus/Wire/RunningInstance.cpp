#include "RunningInstance.h"

#include "BusNames.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QEventLoop>
#include <QTimer>
#include <QVariantMap>

namespace Clipboard::Bus::RunningInstance {

using namespace Qt::StringLiterals;

namespace {

/// One wish to whoever has the name, now or within the limit.
class Activation final : public QObject
{
public:
    explicit Activation(const QDBusConnection& bus)
        : m_bus(bus)
        , m_arrival(serviceName, bus, QDBusServiceWatcher::WatchForRegistration)
    {
        connect(&m_arrival, &QDBusServiceWatcher::serviceRegistered, this, &Activation::ask);
    }

    [[nodiscard]] Answer run()
    {
        ask();
        QTimer::singleShot(answerLimit, &m_loop, &QEventLoop::quit);
        m_loop.exec();
        return m_answer;
    }

private:
    void ask()
    {
        QDBusMessage wish =
            QDBusMessage::createMethodCall(serviceName, objectPath, applicationInterface, u"Activate"_s);
        wish.setAutoStartService(false);
        wish << QVariantMap();
        const auto* reply = new QDBusPendingCallWatcher(m_bus.asyncCall(wish), this);
        connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
            const QDBusError::ErrorType error = reply->error().type();
            // It may be about to take the name.
            if (error == QDBusError::ServiceUnknown || reply->error().name().endsWith("NameHasNoOwner"_L1))
                return;
            if (error == QDBusError::NoError)
                m_answer = Answer::done;
            m_loop.quit();
        });
    }

    QDBusConnection m_bus;
    QDBusServiceWatcher m_arrival;
    QEventLoop m_loop;
    Answer m_answer = Answer::noAnswer;
};

} // namespace

void await()
{
    const QDBusServiceWatcher arrival(serviceName, QDBusConnection::sessionBus(),
                                      QDBusServiceWatcher::WatchForRegistration);
    QEventLoop loop;
    QObject::connect(&arrival, &QDBusServiceWatcher::serviceRegistered, &loop, &QEventLoop::quit);
    QTimer::singleShot(answerLimit, &loop, &QEventLoop::quit);
    if (!isAnnounced()) // it may have come before it was looked for
        loop.exec();
}

bool isAnnounced()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.interface()->isServiceRegistered(serviceName);
}

Answer activate()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? Activation(bus).run() : Answer::noBus;
}

} // namespace Clipboard::Bus::RunningInstance
