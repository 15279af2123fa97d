#include "BusClient.h"

#include <QDBusError>
#include <QDBusMessage>

namespace Clipboard::Command {

using namespace Qt::StringLiterals;

namespace {

Failure failureOf(const QDBusMessage& reply)
{
    const Failure notRunning{ExitCode::notRunning, u"the program is not running; 'tessaly' alone starts it"_s};
    if (reply.errorName().endsWith("NameHasNoOwner"_L1))
        return notRunning;
    switch (QDBusError(reply).type()) {
    case QDBusError::ServiceUnknown:
        return notRunning;
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
    const QDBusMessage reply = m_bus.call(message, QDBus::Block, static_cast<int>(limit.count()));
    if (reply.type() != QDBusMessage::ReplyMessage)
        return failureOf(reply);
    return reply.arguments();
}

} // namespace Clipboard::Command
