#include "BusClient.h"

#include "InstanceLock.h"
#include "RunningInstance.h"

#include <QDBusError>
#include <QDBusMessage>

namespace Clipboard::Command {

using namespace Qt::StringLiterals;

namespace {

/// Nobody has the program's name.
bool isUnheardOf(const QDBusMessage& reply)
{
    return QDBusError(reply).type() == QDBusError::ServiceUnknown || reply.errorName().endsWith("NameHasNoOwner"_L1);
}

Failure failureOf(const QDBusMessage& reply)
{
    if (isUnheardOf(reply))
        return {ExitCode::notRunning, u"the program is not running; 'tessaly' alone starts it"_s};
    switch (QDBusError(reply).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return {ExitCode::unreachable, u"the program runs, but it does not answer"_s};
    case QDBusError::Disconnected:
        return {ExitCode::unreachable, u"the session bus has gone"_s};
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownObject:
        return {ExitCode::unreachable, u"the program that runs is of another version; quit it and start it again"_s};
    default:
        return {ExitCode::failed, reply.errorMessage()};
    }
}

} // namespace

BusClient::BusClient()
    : m_bus(QDBusConnection::sessionBus())
{
}

Answer BusClient::call(const QString& method, const QVariantList& arguments, std::chrono::milliseconds limit) const
{
    if (!m_bus.isConnected())
        return Failure{ExitCode::unreachable,
                       u"there is no session bus to reach the program on (DBUS_SESSION_BUS_ADDRESS)"_s};
    QDBusMessage message =
        QDBusMessage::createMethodCall(Bus::serviceName, Bus::objectPath, Bus::interfaceName, method);
    message.setAutoStartService(false);
    message.setArguments(arguments);
    QDBusMessage reply = m_bus.call(message, QDBus::Block, static_cast<int>(limit.count()));
    if (isUnheardOf(reply) && Bus::InstanceLock::isHeld(Bus::dataFolder() + u"/lock"_s)) {
        Bus::RunningInstance::await(); // it is just starting
        reply = m_bus.call(message, QDBus::Block, static_cast<int>(limit.count()));
    }
    if (reply.type() != QDBusMessage::ReplyMessage)
        return failureOf(reply);
    return reply.arguments();
}

} // namespace Clipboard::Command
