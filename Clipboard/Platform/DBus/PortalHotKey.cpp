#include "PortalHotKey.h"

#include <QCoreApplication>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QLoggingCategory>
#include <QSettings>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

Q_LOGGING_CATEGORY(timing, "tessaly.timing", QtWarningMsg)

const QString shortcutsInterface = u"org.freedesktop.portal.GlobalShortcuts"_s;
const QString sessionInterface = u"org.freedesktop.portal.Session"_s;
const QString shortcutID = u"toggle"_s;
// The key that the user would not give, so that nobody is asked for it at each start. Another one is asked for.
const QString refusedKey = u"portalRefused"_s;

constexpr std::chrono::milliseconds callLimit{5000};

} // namespace

PortalHotKey::PortalHotKey(std::unique_ptr<HotKeyGrabber> otherwise)
    : m_bus(QDBusConnection::sessionBus())
    , m_presence(PortalRequest::service, m_bus,
                 QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration)
    , m_otherwise(std::move(otherwise))
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<PortalShortcuts>();
    connect(&m_presence, &QDBusServiceWatcher::serviceUnregistered, this, &PortalHotKey::closed);
    connect(&m_presence, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (!m_reason.isEmpty())
            askPortal();
    });
    connect(m_otherwise.get(), &HotKeyGrabber::pressed, this, &HotKeyGrabber::pressed);
    connect(m_otherwise.get(), &HotKeyGrabber::granted, this, [this] {
        m_reason.clear();
        setBound(m_otherwise->bound());
        emit granted();
    });
    connect(m_otherwise.get(), &HotKeyGrabber::failed, this, [this](const QString& reason) {
        m_reason = reason;
        askPortal();
    });
}

void PortalHotKey::grab()
{
    forgetSession();
    m_otherwise->setChord(chord());
    m_otherwise->grab();
}

QString PortalHotKey::holder() const
{
    return m_isBound ? u"portal"_s : m_otherwise->holder();
}

/// Only a portal that is there: one that is started for this could hold nothing up, but may have no desktop to ask.
void PortalHotKey::askPortal()
{
    if (!m_bus.isConnected() || wasRefused())
        return explainMissingKey();
    auto question = QDBusMessage::createMethodCall(PortalRequest::service, PortalRequest::objectPath,
                                                   u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question.setAutoStartService(false);
    question.setArguments({shortcutsInterface, u"version"_s});
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question, callLimit.count()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (watcher->isError())
            explainMissingKey();
        else
            createSession();
    });
}

void PortalHotKey::createSession()
{
    forgetSession();
    const auto created = [this](PortalRequest::Outcome outcome, const QVariantMap& results) {
        m_session = results.value(u"session_handle"_s).toString();
        if (outcome != PortalRequest::Outcome::granted || m_session.isEmpty())
            return explainMissingKey();
        const QString& portal = PortalRequest::service;
        m_bus.connect(portal, PortalRequest::objectPath, shortcutsInterface, u"Activated"_s, this,
                      SLOT(shortcutActivated(QDBusObjectPath, QString)));
        m_bus.connect(portal, PortalRequest::objectPath, shortcutsInterface, u"ShortcutsChanged"_s, this,
                      SLOT(shortcutsChanged(QDBusMessage)));
        m_bus.connect(portal, m_session, sessionInterface, u"Closed"_s, this, SLOT(closed()));
        bind();
    };
    ask(u"CreateSession"_s, {}, {{u"session_handle_token"_s, u"tessaly"_s}}, created);
}

void PortalHotKey::ask(const QString& method, const QVariantList& arguments, const QVariantMap& options,
                       const PortalRequest::Done& done)
{
    m_request = new PortalRequest(m_bus, {shortcutsInterface, method, arguments, options}, done, this);
}

void PortalHotKey::bind()
{
    const PortalShortcuts wanted{
        {shortcutID,
         {{u"description"_s, QCoreApplication::translate("HotKeyGrabber", "Open the clipboard’s history")},
          {u"preferred_trigger"_s, portalTrigger(chord())}}}};
    const QString noWindow;
    const QVariantList arguments{QVariant::fromValue(QDBusObjectPath(m_session)), QVariant::fromValue(wanted),
                                 noWindow};
    const auto bound = [this](PortalRequest::Outcome outcome, const QVariantMap& results) {
        if (outcome == PortalRequest::Outcome::refused)
            QSettings().setValue(refusedKey, chord().text());
        const bool isGranted = outcome == PortalRequest::Outcome::granted;
        judge(isGranted ? qdbus_cast<PortalShortcuts>(results.value(u"shortcuts"_s)) : PortalShortcuts());
    };
    ask(u"BindShortcuts"_s, arguments, {}, bound);
}

/// The user may have given it another key, which the portal tells in words alone.
void PortalHotKey::judge(const PortalShortcuts& shortcuts)
{
    const auto found = std::ranges::find(shortcuts, shortcutID, &PortalShortcut::id);
    m_isBound = found != shortcuts.cend() && !found->trigger().isEmpty();
    if (!m_isBound)
        return explainMissingKey();
    const QString words = found->trigger().replace("Meta"_L1, "Super"_L1).replace("Logo"_L1, "Super"_L1);
    setBound(ClipboardCore::KeyChord::fromText(words).value_or(chord()));
    qCDebug(timing, "hot-key-grabbed");
    emit granted();
}

void PortalHotKey::explainMissingKey()
{
    m_isBound = false;
    emit failed(m_reason);
}

void PortalHotKey::shortcutActivated(const QDBusObjectPath& session, const QString& shortcut)
{
    if (session.path() == m_session && shortcut == shortcutID)
        emit pressed();
}

void PortalHotKey::shortcutsChanged(const QDBusMessage& message)
{
    if (message.arguments().value(0).value<QDBusObjectPath>().path() == m_session)
        judge(qdbus_cast<PortalShortcuts>(message.arguments().value(1)));
}

/// By the portal, or with it.
void PortalHotKey::closed()
{
    m_session.clear();
    if (m_request)
        m_request->forget();
    if (!m_reason.isEmpty())
        explainMissingKey();
}

void PortalHotKey::forgetSession()
{
    if (m_request)
        m_request->forget();
    m_isBound = false;
    if (m_session.isEmpty())
        return;
    m_bus.disconnect(PortalRequest::service, m_session, sessionInterface, u"Closed"_s, this, SLOT(closed()));
    m_bus.send(QDBusMessage::createMethodCall(PortalRequest::service, m_session, sessionInterface, u"Close"_s));
    m_session.clear();
}

bool PortalHotKey::wasRefused() const
{
    return QSettings().value(refusedKey).toString() == chord().text();
}

} // namespace Clipboard
