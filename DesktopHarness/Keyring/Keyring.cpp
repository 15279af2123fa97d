#include "Keyring.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <utility>

namespace Clipboard::Testing {

using namespace Qt::StringLiterals;
using Path = QDBusObjectPath;

namespace {

const QString servicePath = u"/org/freedesktop/secrets"_s;
const QString serviceName = u"org.freedesktop.secrets"_s;
const QString interfaces = u"org.freedesktop.Secret."_s;

const Path collection(u"/c"_s);
const Path item(u"/i"_s);
const Path prompt(u"/p"_s);
const Path nothing(u"/"_s);

/// (oayays): session, parameters, value, content type.
QVariant secretOf(const QByteArray& value)
{
    QDBusArgument secret;
    secret.beginStructure();
    secret << Path(u"/s"_s) << QByteArray() << value << QString();
    secret.endStructure();
    return QVariant::fromValue(secret);
}

QByteArray valueIn(const QVariant& argument)
{
    const auto secret = argument.value<QDBusArgument>();
    Path session;
    QByteArray parameters;
    QByteArray value;
    QString contentType;
    secret.beginStructure();
    secret >> session >> parameters >> value >> contentType;
    secret.endStructure();
    return value;
}

} // namespace

Keyring::Keyring(const QString& busAddress)
    : m_bus(QDBusConnection::connectToBus(busAddress, u"keyring"_s))
{
    m_bus.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath);
}

Keyring::~Keyring()
{
    setThere(false); // has gone once this returns; a connection goes when it goes
    QDBusConnection::disconnectFromBus(m_bus.name());
}

void Keyring::setThere(bool isThere)
{
    if (isThere)
        m_bus.registerService(serviceName);
    else
        m_bus.unregisterService(serviceName);
}

void Keyring::sayUnlocked()
{
    isLocked = false;
    m_bus.send(QDBusMessage::createSignal(servicePath, interfaces + "Service"_L1, u"CollectionChanged"_s)
               << QVariant::fromValue(collection));
}

void Keyring::speak()
{
    isSilent = false;
    for (const QDBusMessage& message : std::exchange(m_unanswered, {}))
        handleMessage(message, m_bus);
}

QString Keyring::introspect(const QString& /*path*/) const
{
    return {};
}

bool Keyring::handleMessage(const QDBusMessage& message, const QDBusConnection& bus)
{
    if (isSilent) {
        message.setDelayedReply(true);
        m_unanswered.append(message);
        return true;
    }
    const QString call = message.member();
    if (call == "CreateItem"_L1 && !refusal.isEmpty())
        return bus.send(message.createErrorReply(u"org.freedesktop.DBus.Error.Failed"_s, refusal));
    bus.send(message.createReply(answer(message)));
    if (call == "Prompt"_L1) {
        isLocked = isLocked && isDismissed;
        m_bus.send(QDBusMessage::createSignal(message.path(), interfaces + "Prompt"_L1, u"Completed"_s)
                   << isDismissed << QVariant::fromValue(QDBusVariant(QString())));
    }
    return true;
}

QVariantList Keyring::answer(const QDBusMessage& message)
{
    const QString call = message.member();
    const auto found = [this](bool isAsked) {
        return QVariant::fromValue(!key.isEmpty() && isAsked ? QList{item} : QList<Path>());
    };
    if (call == "OpenSession"_L1)
        return {QVariant::fromValue(QDBusVariant(QString())), QVariant::fromValue(Path(u"/s"_s))};
    if (call == "SearchItems"_L1)
        return {found(!isLocked), found(isLocked)};
    if (call == "ReadAlias"_L1)
        return {QVariant::fromValue(hasCollection ? collection : nothing)};
    if (call == "Unlock"_L1)
        return {found(false), QVariant::fromValue(isLocked ? prompt : nothing)};
    if (call == "CreateItem"_L1) {
        key = valueIn(message.arguments().value(1));
        return {QVariant::fromValue(item), QVariant::fromValue(nothing)};
    }
    return call == "GetSecret"_L1 ? QVariantList{secretOf(key)} : QVariantList();
}

} // namespace Clipboard::Testing
