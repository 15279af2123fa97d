#include "Motion.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QProcess>
#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

namespace {

const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString animations = u"enable-animations"_s;
const QString gnome = u"org.gnome.desktop.interface"_s;

} // namespace

/// Stands in for a desktop's settings portal.
class SettingsPortal final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    using QObject::QObject;
    int questions = 0;

public slots:
    QDBusVariant Read(const QString& group, const QString& key)
    {
        ++questions;
        const bool known = group == gnome && key == animations;
        return QDBusVariant(QVariant::fromValue(QDBusVariant(known ? QVariant(false) : QVariant(1.0))));
    }
};

class DesktopMotionTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void followsTheDesktopsSetting();
    void cleanupTestCase();

private:
    QProcess m_bus;
};

void DesktopMotionTest::initTestCase()
{
    m_bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--nopidfile"_s, u"--print-address=1"_s});
    QVERIFY(m_bus.waitForReadyRead());
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
}

void DesktopMotionTest::followsTheDesktopsSetting()
{
    SettingsPortal portal;
    QDBusConnection desktop =
        QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), u"desktop"_s);
    QVERIFY(desktop.registerObject(portalPath, &portal, QDBusConnection::ExportAllSlots));
    QVERIFY(desktop.registerService(u"org.freedesktop.portal.Desktop"_s));
    const auto change = [&](const QString& group, const QString& key, const QVariant& value) {
        QDBusMessage signal =
            QDBusMessage::createSignal(portalPath, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        QVERIFY(desktop.send(signal));
    };

    QVERIFY(!Motion::isReduced());
    Motion::followDesktop();
    QTRY_VERIFY(Motion::isReduced());
    QTRY_COMPARE(portal.questions, 2);
    QCOMPARE(Motion::duration(Theme::sheetDuration), 0);
    change(gnome, animations, true);
    QTRY_VERIFY(!Motion::isReduced());
    change(u"org.kde.kdeglobals.KDE"_s, u"AnimationDurationFactor"_s, 0.0);
    QTRY_VERIFY(Motion::isReduced());
    change(u"org.kde.kdeglobals.KDE"_s, u"AnimationDurationFactor"_s, 0.5);
    QTRY_VERIFY(!Motion::isReduced());
}

void DesktopMotionTest::cleanupTestCase()
{
    QDBusConnection::disconnectFromBus(u"desktop"_s);
    m_bus.kill();
    m_bus.waitForFinished();
}

QTEST_GUILESS_MAIN(DesktopMotionTest)

#include "DesktopMotionTest.moc"
