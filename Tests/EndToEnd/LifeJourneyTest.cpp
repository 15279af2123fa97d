#include "ForeignClient.h"
#include "JourneyTest.h"

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

/// How the program begins and ends, as a session and a person at a terminal see it.
class LifeJourneyTest final : public JourneyTest
{
    Q_OBJECT

private slots:
    void endsCleanlyWithThePanelOpen_data();
    void endsCleanlyWithThePanelOpen();
    void aSecondStartOpensThePanelOfTheFirst();
    void aSecondStartThatReachesNobodyEnds_data();
    void aSecondStartThatReachesNobodyEnds();
    void answersWithoutADisplay_data();
    void answersWithoutADisplay();
};

void LifeJourneyTest::endsCleanlyWithThePanelOpen_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void LifeJourneyTest::endsCleanlyWithThePanelOpen()
{
    QFETCH(int, signal);
    callUp();
    ForeignClient neighbour(session());
    neighbour.copyText("just copied");
    endTessaly(signal);
    QCOMPARE(contents(), QStringList{u"just copied"_s}); // although it may not have been read yet
}

void LifeJourneyTest::aSecondStartOpensThePanelOfTheFirst()
{
    for (int i = 0; i < 2; ++i) { // also when it is open
        QCOMPARE(session().run(tessaly().program()).exitCode, 0);
        expectPanel();
    }
    QVERIFY(tessaly().isRunning());

    endTessaly(SIGKILL); // leaves no lock behind
    startTessaly();
}

void LifeJourneyTest::aSecondStartThatReachesNobodyEnds_data()
{
    QTest::addColumn<bool>("isElsewhere");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("no session bus") << false << QByteArray("there is no session bus");
    QTest::newRow("another display") << true << QByteArray("on the display ");
}

void LifeJourneyTest::aSecondStartThatReachesNobodyEnds()
{
    QFETCH(bool, isElsewhere);
    QFETCH(QByteArray, reason);
    const VirtualSession elsewhere({.windowManager = false});
    const QStringList change = isElsewhere ? QStringList{u"DISPLAY="_s + elsewhere.display()}
                                           : QStringList{u"-u"_s, u"DBUS_SESSION_BUS_ADDRESS"_s};
    const VirtualSession::Result second = session().run(u"env"_s, change + QStringList{tessaly().program()});
    QCOMPARE(second.exitCode, 3);
    QVERIFY2(second.errors.contains(reason), second.errors.constData());
    QVERIFY(tessaly().isRunning());
    QVERIFY(!tessaly().panel());
}

void LifeJourneyTest::answersWithoutADisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("version") << QStringList{u"--version"_s} << 0 << QByteArray("Tessaly ");
    QTest::newRow("help") << QStringList{u"--help"_s} << 0 << QByteArray("Usage: tessaly");
    QTest::newRow("start") << QStringList() << 1 << QByteArray("no display");
}

void LifeJourneyTest::answersWithoutADisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QByteArray, answer);
    const VirtualSession::Result result =
        session().run(u"env"_s, QStringList{u"-u"_s, u"DISPLAY"_s, tessaly().program()} + arguments);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY2((result.output + result.errors).contains(answer), (result.output + result.errors).constData());
}

QTEST_GUILESS_MAIN(LifeJourneyTest)
#include "LifeJourneyTest.moc"
