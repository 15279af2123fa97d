#include "AssistiveClient.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

namespace {

struct Reference
{
    QString service;
    QDBusObjectPath path;
};

const QDBusArgument& operator>>(const QDBusArgument& argument, Reference& reference)
{
    argument.beginStructure();
    argument >> reference.service >> reference.path;
    argument.endStructure();
    return argument;
}

constexpr QLatin1String accessible("org.a11y.atspi.Accessible");
constexpr QLatin1String actions("org.a11y.atspi.Action");
const QString events = u"org.a11y.atspi.Event.Object"_s;
const QString registryPath = u"/org/a11y/atspi/registry"_s;
const QVariantList listening{u"object:state-changed:"_s};

const QString sessionConnection = u"session of the assistive client"_s;
const QString accessibilityConnection = u"accessibility bus of the assistive client"_s;

QString accessibilityBus(const QString& sessionBus)
{
    const QDBusConnection session = QDBusConnection::connectToBus(sessionBus, sessionConnection);
    const QDBusMessage question =
        QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s);
    return session.call(question).arguments().value(0).toString();
}

} // namespace

AssistiveClient::AssistiveClient(const QString& sessionBus, Manner manner)
    : m_bus(QDBusConnection::connectToBus(accessibilityBus(sessionBus), accessibilityConnection))
{
    if (!m_bus.isConnected())
        qFatal("There is no accessibility bus: %s", qPrintable(m_bus.lastError().message()));
    m_bus.connect({}, {}, events, u"StateChanged"_s, this, SLOT(stateChanged(QDBusMessage)));
    // Programs say only what somebody asked for.
    if (manner == Manner::screenReader)
        ask(registry, registryPath, registry, u"RegisterEvent"_s, listening);
    else
        m_bus.connect(registry, {}, events, u"ChildrenChanged"_s, this, SLOT(childrenChanged(QDBusMessage)));
}

AssistiveClient::~AssistiveClient()
{
    QDBusConnection::disconnectFromBus(accessibilityConnection);
    QDBusConnection::disconnectFromBus(sessionConnection);
}

QVariant AssistiveClient::ask(const QString& service, const QString& path, const QString& interface,
                              const QString& method, const QVariantList& arguments) const
{
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, method);
    question.setArguments(arguments);
    return m_bus.call(question).arguments().value(0);
}

AssistiveClient::Element AssistiveClient::element(const QString& service, const QString& path) const
{
    const auto text = [&](const QString& property) {
        const QVariant value =
            ask(service, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {QString(accessible), property});
        return value.value<QDBusVariant>().variant().toString();
    };
    Element element{service, path, ask(service, path, accessible, u"GetRoleName"_s).toString(), text(u"Name"_s),
                    text(u"Description"_s)};
    const auto words = qdbus_cast<QList<uint>>(ask(service, path, accessible, u"GetState"_s));
    for (qsizetype i = 0; i < words.size(); ++i)
        element.states |= quint64{words[i]} << 32 * i;
    return element;
}

QList<AssistiveClient::Element> AssistiveClient::elements(const QString& service, const QString& path) const
{
    QList<Element> found;
    const auto children = qdbus_cast<QList<Reference>>(ask(service, path, accessible, u"GetChildren"_s));
    for (const Reference& child : children) {
        const Element seen = element(child.service, child.path.path());
        if (seen.is(showing))
            found += QList{seen} + elements(child.service, child.path.path());
    }
    return found;
}

bool AssistiveClient::perform(const Element& element, const QString& action) const
{
    for (int i = 0;; ++i) {
        const QString name = ask(element.service, element.path, actions, u"GetName"_s, {i}).toString();
        if (name.isEmpty())
            return false;
        if (name == action)
            return ask(element.service, element.path, actions, u"DoAction"_s, {i}).toBool();
    }
}

void AssistiveClient::stateChanged(const QDBusMessage& message)
{
    if (message.arguments().value(1).toInt() != 1)
        return; // left
    const Element source = element(message.service(), message.path());
    m_heard.append(u"%1 %2 %3"_s.arg(message.arguments().value(0).toString(), source.role, source.name));
    emit said(m_heard.last());
}

/// A program has come or gone. One that has come gets to know what to say, and answers once it does.
void AssistiveClient::childrenChanged(const QDBusMessage& message)
{
    if (message.arguments().value(0) != u"add"_s)
        return;
    const auto program = qdbus_cast<Reference>(message.arguments().value(3).value<QDBusVariant>().variant());
    ask(registry, registryPath, registry, u"RegisterEvent"_s, listening);
    ask(program.service, program.path.path(), accessible, u"GetRoleName"_s);
    ask(registry, registryPath, registry, u"DeregisterEvent"_s, listening);
    emit joined();
}

} // namespace Clipboard::Testing
