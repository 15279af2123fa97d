#include "ForeignClient.h"
#include "JourneyTest.h"
#include "Rows.h"

#include <QDirIterator>
#include <QFile>

#include <sys/resource.h>

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
    void contentStaysInTheHistory();

private:
    void prepare() override;
    void answers(const char* name, const QStringList& environment, const QStringList& arguments, int exitCode,
                 const QByteArray& answer);
    /// The names of all files in the person's home that hold the text.
    [[nodiscard]] QStringList filesWith(const QByteArray& text);
};

/// The program starts as on a system that writes core files.
void LifeJourneyTest::prepare()
{
    rlimit limit = {};
    QCOMPARE(::getrlimit(RLIMIT_CORE, &limit), 0);
    limit.rlim_cur = limit.rlim_max;
    QCOMPARE(::setrlimit(RLIMIT_CORE, &limit), 0);
}

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

QStringList LifeJourneyTest::filesWith(const QByteArray& text)
{
    QStringList found;
    for (QDirIterator all(session().homePath({}), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         all.hasNext();) {
        QFile file(all.next());
        if (file.open(QFile::ReadOnly) && file.readAll().contains(text))
            found.append(all.fileName());
    }
    found.sort();
    return found;
}

void LifeJourneyTest::contentStaysInTheHistory()
{
    const QByteArray marked = "a text like no other";
    copy(marked);
    callUp();
    type("like no");
    press("ctrl+k Escape Escape Escape");
    expectNoPanel();
    for (const char* view : {"cmdline", "comm", "environ", "limits"}) {
        QFile file(u"/proc/%1/%2"_s.arg(tessaly().processID()).arg(QLatin1StringView(view)));
        QVERIFY(file.open(QFile::ReadOnly));
        const QByteArray shown = file.readAll();
        QVERIFY2(!shown.contains(marked), shown.constData());
        QCOMPARE(shown.contains("Max core file size        0 "), view == QByteArrayView("limits"));
    }
    endTessaly();
    QCOMPARE(filesWith(marked), QStringList{u"history.json"_s});
    QCOMPARE(QFile::permissions(tessaly().historyFile()) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    startTessaly();
    callUp();
    press("shift+Delete Escape");
    endTessaly();
    QCOMPARE(filesWith(marked), QStringList());
}

QTEST_GUILESS_MAIN(LifeJourneyTest)
#include "LifeJourneyTest.moc"
