#include "PortalHotKey.h"

#include "NullHotKeyGrabber.h"
#include "Rows.h"
#include "SessionTest.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSettings>
#include <QSignalSpy>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

/// The desktop's side of the bus, on a connection of its own.
class FakePortal final : public QDBusVirtualObject
{
public:
    FakePortal()
    {
        m_bus.registerVirtualObject(PortalRequest::objectPath, this, QDBusConnection::SubPath);
        m_bus.registerService(PortalRequest::service);
    }
    ~FakePortal() override
    {
        m_bus.unregisterService(PortalRequest::service); // has gone once this returns; a connection goes when it goes
        QDBusConnection::disconnectFromBus(m_bus.name());
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        calls.append(message.member());
        const QVariantMap options = qdbus_cast<QVariantMap>(message.arguments().last());
        const QString request = PortalRequest::objectPath + u"/request/"_s +
                                message.service().mid(1).replace(u'.', u'_') + u'/' +
                                options.value(u"handle_token"_s).toString();
        if (message.member() == "Get"_L1)
            return bus.send(version == 0 ? message.createErrorReply(QDBusError::InvalidArgs, u"none"_s)
                                         : message.createReply(QVariant::fromValue(QDBusVariant(version))));
        if (message.member() == "CreateSession"_L1)
            answer(request, 0, {{u"session_handle"_s, session}});
        if (message.member() == "BindShortcuts"_L1) {
            asked = qdbus_cast<PortalShortcuts>(message.arguments().at(1));
            if (isThinking)
                return true;
            answer(request, response, {{u"shortcuts"_s, QVariant::fromValue(given)}});
        }
        return bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
    }
    void activate(const QString& path, const QString& shortcut)
    {
        signal(u"Activated"_s, {QVariant::fromValue(QDBusObjectPath(path)), shortcut, 0ULL, QVariantMap()});
    }
    void signal(const QString& name, const QVariantList& arguments)
    {
        auto message =
            QDBusMessage::createSignal(PortalRequest::objectPath, u"org.freedesktop.portal.GlobalShortcuts"_s, name);
        message.setArguments(arguments);
        m_bus.send(message);
    }

    const QString session = PortalRequest::objectPath + u"/session/1_1/tessaly"_s;
    QStringList calls;
    PortalShortcuts asked;
    uint version = 1;
    uint response = 0;
    bool isThinking = false;
    PortalShortcuts given{{u"toggle"_s, {{u"trigger_description"_s, u"Meta+V"_s}}}};

private:
    void answer(const QString& request, uint code, const QVariantMap& results)
    {
        auto message = QDBusMessage::createSignal(request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        m_bus.send(message << code << results);
    }

    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
};

/// The hot key and what it has told: "granted", or why not.
struct Asking
{
    Asking()
    {
        QObject::connect(&hotKey, &HotKeyGrabber::granted, [this] { told.append(u"granted"_s); });
        QObject::connect(&hotKey, &HotKeyGrabber::failed, [this](const QString& reason) { told.append(reason); });
        hotKey.grab();
    }
    [[nodiscard]] bool hears(const QStringList& expected) const
    {
        return VirtualSession::waitUntil([&] { return told == expected; });
    }

    PortalHotKey hotKey{std::make_unique<NullHotKeyGrabber>(u"otherwise"_s)};
    QStringList told;
};

} // namespace

/// The hot key by the portal of global shortcuts, against a stand-in for it.
class PortalHotKeyTest final : public SessionTest
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { QSettings().clear(); }
    void isBoundOnlyWithAKey();
    void isPressed();
    void refusalIsTakenForAnAnswer();
    void outlivesThePortal();
    void triggers();
};

void PortalHotKeyTest::initTestCase()
{
    SessionTest::initTestCase();
    enter(*m_session);
    QCoreApplication::setOrganizationName(u"Tessaly"_s);
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<PortalShortcuts>();
}

void PortalHotKeyTest::isBoundOnlyWithAKey()
{
    const auto check = [](const char* /*name*/, uint version, uint response, const PortalShortcuts& given,
                          const QString& told) {
        FakePortal portal;
        portal.version = version;
        portal.response = response;
        portal.given = given;
        const Asking asking;
        QVERIFY2(asking.hears({told}), qPrintable(asking.told.join(u'|')));
        QCOMPARE(asking.hotKey.holder(), told == "granted"_L1 ? u"portal"_s : QString());
        QCOMPARE(asking.hotKey.bound().text(), told == "granted"_L1 ? u"Super+V"_s : u"Super+Shift+V"_s);
    };
    const PortalShortcuts bound = FakePortal().given;
    const PortalShortcuts another{{u"another"_s, bound.first().properties}};
    checkRows(+check, {{"bound", 1U, 0U, bound, u"granted"_s},
                       {"listed without a key", 1U, 0U, PortalShortcuts{{u"toggle"_s, {}}}, u"otherwise"_s},
                       {"an empty list", 1U, 0U, PortalShortcuts(), u"otherwise"_s},
                       {"another shortcut", 1U, 0U, another, u"otherwise"_s},
                       {"a failure", 1U, 2U, bound, u"otherwise"_s},
                       {"no such interface", 0U, 0U, bound, u"otherwise"_s}});
}

void PortalHotKeyTest::isPressed()
{
    FakePortal portal;
    Asking asking;
    const QSignalSpy pressed(&asking.hotKey, &HotKeyGrabber::pressed);
    QVERIFY(asking.hears({u"granted"_s}));
    QCOMPARE(portal.asked.first().properties.value(u"preferred_trigger"_s).toString(), u"LOGO+SHIFT+v"_s);
    portal.activate(portal.session, u"another"_s);
    portal.activate(u"/another/session"_s, u"toggle"_s);
    portal.activate(portal.session, u"toggle"_s);
    // The user takes the key away, and gives another.
    for (const char* words : {"", "Logo+F9"}) {
        const PortalShortcuts now{{u"toggle"_s, {{u"trigger_description"_s, QLatin1StringView(words)}}}};
        portal.signal(u"ShortcutsChanged"_s,
                      {QVariant::fromValue(QDBusObjectPath(portal.session)), QVariant::fromValue(now)});
    }
    QVERIFY(asking.hears({u"granted"_s, u"otherwise"_s, u"granted"_s}));
    QCOMPARE(pressed.size(), 1);
    QCOMPARE(asking.hotKey.bound().text(), u"Super+F9"_s);
}

void PortalHotKeyTest::refusalIsTakenForAnAnswer()
{
    FakePortal portal;
    portal.response = 1;
    QVERIFY(Asking().hears({u"otherwise"_s}));
    QVERIFY(portal.calls.contains(u"BindShortcuts"_s));
    portal.calls.clear();
    portal.response = 0;
    Asking again; // at the next start
    QVERIFY(again.hears({u"otherwise"_s}));
    again.hotKey.setChord(*ClipboardCore::KeyChord::fromText(u"Ctrl+Alt+H"));
    again.hotKey.grab(); // the user wants another key
    QVERIFY(again.hears({u"otherwise"_s, u"granted"_s}));
    QCOMPARE(portal.calls, QStringList({u"Get"_s, u"CreateSession"_s, u"BindShortcuts"_s}));
}

void PortalHotKeyTest::outlivesThePortal()
{
    auto portal = std::make_unique<FakePortal>();
    const Asking asking;
    QVERIFY(asking.hears({u"granted"_s}));
    portal.reset();
    QVERIFY(asking.hears({u"granted"_s, u"otherwise"_s}));
    portal = std::make_unique<FakePortal>();
    portal->isThinking = true;
    QVERIFY(VirtualSession::waitUntil([&] { return portal->calls.contains(u"BindShortcuts"_s); }));
    portal.reset(); // while its user ponders
    QVERIFY(asking.hears({u"granted"_s, u"otherwise"_s, u"otherwise"_s}));
    portal = std::make_unique<FakePortal>();
    QVERIFY(asking.hears({u"granted"_s, u"otherwise"_s, u"otherwise"_s, u"granted"_s}));
}

void PortalHotKeyTest::triggers()
{
    const auto check = [](const char* /*name*/, const QString& chord, const QString& trigger) {
        QCOMPARE(portalTrigger(*ClipboardCore::KeyChord::fromText(chord)), trigger);
    };
    checkRows(+check, {{"a letter", u"Super+Ctrl+V"_s, u"CTRL+LOGO+v"_s},
                       {"a key with a name", u"Alt+PageDown"_s, u"ALT+Page_Down"_s},
                       {"one in lower case", u"Alt+Space"_s, u"ALT+space"_s}});
}

QTEST_GUILESS_MAIN(PortalHotKeyTest)
#include "PortalHotKeyTest.moc"
