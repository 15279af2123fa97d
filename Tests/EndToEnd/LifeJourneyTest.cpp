#include "ForeignClient.h"
#include "JourneyTest.h"
#include "Rows.h"

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

/// How the program begins and ends, as a session and a person at a terminal see it.
class LifeJourneyTest final : public JourneyTest
{
    Q_OBJECT

private slots:
    void endsCleanlyWithThePanelOpen();
    void aSecondStartOpensThePanelOfTheFirst();
    void aSecondStartThatReachesNobodyEnds();
    void answersWithoutADisplay();

private:
    void answers(const char* name, const QStringList& environment, const QStringList& arguments, int exitCode,
                 const QByteArray& answer);
};

void LifeJourneyTest::endsCleanlyWithThePanelOpen()
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        callUp();
        ForeignClient neighbour(session());
        const QByteArray copied = "just copied " + QByteArray::number(signal);
        neighbour.copyText(copied);
        endTessaly(signal);
        QCOMPARE(newest().content, QString::fromLatin1(copied)); // although it may not have been read yet
        startTessaly();
    }
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

void LifeJourneyTest::answers(const char* /*name*/, const QStringList& environment, const QStringList& arguments,
                              int exitCode, const QByteArray& answer)
{
    const VirtualSession::Result result =
        session().run(u"env"_s, environment + QStringList{tessaly().program()} + arguments);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY2((result.output + result.errors).contains(answer), (result.output + result.errors).constData());
}

void LifeJourneyTest::aSecondStartThatReachesNobodyEnds()
{
    const VirtualSession elsewhere({.windowManager = false});
    const QStringList withoutBus{u"-u"_s, u"DBUS_SESSION_BUS_ADDRESS"_s};
    checkRows(this, &LifeJourneyTest::answers,
              {{"no session bus", withoutBus, {}, 3, "there is no session bus"},
               {"another display", {u"DISPLAY="_s + elsewhere.display()}, {}, 3, "on the display "}});
    QVERIFY(tessaly().isRunning());
    QVERIFY(!tessaly().panel());
}

void LifeJourneyTest::answersWithoutADisplay()
{
    const QStringList withoutDisplay{u"-u"_s, u"DISPLAY"_s};
    checkRows(this, &LifeJourneyTest::answers,
              {{"version", withoutDisplay, {u"--version"_s}, 0, "Tessaly "},
               {"help", withoutDisplay, {u"--help"_s}, 0, "Usage: tessaly"},
               {"start", withoutDisplay, {}, 1, "no display"},
               {"none there", {u"DISPLAY=:987"_s}, {}, 1, "cannot be reached"}});
}

QTEST_GUILESS_MAIN(LifeJourneyTest)
#include "LifeJourneyTest.moc"
