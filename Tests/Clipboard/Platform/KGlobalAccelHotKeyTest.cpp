#include "KGlobalAccelHotKey.h"

#include "KeySequence.h"
#include "NullHotKeyGrabber.h"
#include "Rows.h"
#include "SessionTest.h"

#include <QDBusVirtualObject>
#include <QSignalSpy>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

const KeySequences superShiftV{{{0x12000056}}};

/// Plasma's side of the bus, on a connection of its own.
class FakeKGlobalAccel final : public QDBusVirtualObject
{
public:
    FakeKGlobalAccel()
    {
        m_bus.registerVirtualObject(u"/kglobalaccel"_s, this);
        m_bus.registerService(u"org.kde.kglobalaccel"_s);
    }
    ~FakeKGlobalAccel() override
    {
        m_bus.unregisterService(
            u"org.kde.kglobalaccel"_s); // has gone once this returns; a connection goes when it goes
        QDBusConnection::disconnectFromBus(m_bus.name());
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        calls.append(message.member());
        if (message.member() == "doRegister"_L1)
            action = message.arguments().value(0).toStringList();
        if (message.member() == "setShortcutKeys"_L1) {
            asked = qdbus_cast<KeySequences>(message.arguments().at(1));
            bus.send(message.createReply(QVariant::fromValue(given)));
        } else if (message.member() == "globalShortcutAvailable"_L1) {
            bus.send(message.createReply(isFree));
        } else {
            bus.send(message.createReply());
        }
        return true;
    }
    void say(const char* what, const QString& shortcut)
    {
        auto signal = QDBusMessage::createSignal(u"/component/program"_s, u"org.kde.kglobalaccel.Component"_s,
                                                 QLatin1StringView(what));
        m_bus.send(signal << action.value(0) << shortcut << 0LL);
    }
    void change(const KeySequences& keys)
    {
        auto signal =
            QDBusMessage::createSignal(u"/kglobalaccel"_s, u"org.kde.KGlobalAccel"_s, u"yourShortcutsChanged"_s);
        m_bus.send(signal << action << QVariant::fromValue(keys));
    }

    QStringList calls;
    QStringList action;
    KeySequences asked;
    KeySequences given = superShiftV;
    bool isFree = true;

private:
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"plasma"_s);
};

} // namespace

/// The hot key of a Plasma session, against a stand-in for its service.
class KGlobalAccelHotKeyTest final : public SessionTest
{
    Q_OBJECT
private slots:
    void initTestCase();
    void isPressedOnceAndLetGo();
    void tellsWhyThereIsNoKey();
    void asksOtherwiseUntilThereIsAService();

private:
    void isRefused(const char* name, bool isFree, const QString& reason);

    static std::unique_ptr<KGlobalAccelHotKey> make()
    {
        return std::make_unique<KGlobalAccelHotKey>(std::make_unique<NullHotKeyGrabber>(u"otherwise"_s));
    }
};

void KGlobalAccelHotKeyTest::initTestCase()
{
    SessionTest::initTestCase();
    enter(*m_session);
}

void KGlobalAccelHotKeyTest::isPressedOnceAndLetGo()
{
    FakeKGlobalAccel plasma;
    auto hotKey = make();
    const QSignalSpy granted(hotKey.get(), &HotKeyGrabber::granted);
    const QSignalSpy pressed(hotKey.get(), &HotKeyGrabber::pressed);
    hotKey->grab();
    QVERIFY(VirtualSession::waitUntil([&] { return granted.size() == 1; }));
    QVERIFY(plasma.asked.first().keys == superShiftV.first().keys);

    plasma.say("globalShortcutPressed", u"another"_s);
    for (int repetition = 0; repetition < 3; ++repetition)
        plasma.say("globalShortcutPressed", plasma.action.at(1));
    plasma.say("globalShortcutReleased", plasma.action.at(1));
    plasma.change({{{0x10000056}}}); // comes after those
    QVERIFY(VirtualSession::waitUntil([&] { return granted.size() == 2; }));
    QCOMPARE(pressed.size(), 1);
    QCOMPARE(hotKey->bound().text(), u"Super+V"_s);
    plasma.say("globalShortcutPressed", plasma.action.at(1));
    QVERIFY(VirtualSession::waitUntil([&] { return pressed.size() == 2; }));

    hotKey.reset(); // does not wait for long: it is this thread that would answer
    QVERIFY(VirtualSession::waitUntil([&] { return plasma.calls.last() == "setInactive"_L1; }));
}

void KGlobalAccelHotKeyTest::isRefused(const char* /*name*/, bool isFree, const QString& reason)
{
    FakeKGlobalAccel plasma;
    plasma.given = {{}};
    plasma.isFree = isFree;
    const auto hotKey = make();
    QSignalSpy failed(hotKey.get(), &HotKeyGrabber::failed);
    hotKey->grab();
    QVERIFY(VirtualSession::waitUntil([&] { return failed.size() == 1; }));
    QCOMPARE(failed.first().first().toString(), reason);
}

void KGlobalAccelHotKeyTest::tellsWhyThereIsNoKey()
{
    checkRows(this, &KGlobalAccelHotKeyTest::isRefused,
              {{"another's", false, u"%1 is in use by another program. Choose another key in Preferences."_s},
               {"taken away by the user", true, u"The system settings have no key that opens Tessaly."_s}});
}

void KGlobalAccelHotKeyTest::asksOtherwiseUntilThereIsAService()
{
    const auto hotKey = make();
    QSignalSpy failed(hotKey.get(), &HotKeyGrabber::failed);
    const QSignalSpy granted(hotKey.get(), &HotKeyGrabber::granted);
    hotKey->grab();
    QVERIFY(VirtualSession::waitUntil([&] { return failed.size() == 1; }));
    QCOMPARE(failed.first().first().toString(), u"otherwise"_s);
    const FakeKGlobalAccel plasma;
    QVERIFY(VirtualSession::waitUntil([&] { return granted.size() == 1; }));
    QCOMPARE(failed.size(), 1);
}

QTEST_GUILESS_MAIN(KGlobalAccelHotKeyTest)
#include "KGlobalAccelHotKeyTest.moc"
