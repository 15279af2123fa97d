#include "EncodedPicture.h"
#include "ForeignClient.h"
#include "JourneyTest.h"
#include "Rows.h"
#include "Xcb.h"

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
    void aFolderThatGoesIsThereAgain();
    void aSecondStartThatReachesNobodyEnds();
    void answersWithoutADisplay();
    void contentStaysInTheHistory();

private:
    void prepare() override;
    void answers(const char* name, const QStringList& environment, const QStringList& arguments, int exitCode,
                 const QByteArray& answer);
    /// Text, file, picture, secret, search, notice, annotation: whatever there is that could show the text.
    void bringItEverywhere(const QByteArray& text, const QByteArray& secret);
    /// The names of all files in the person's home, or loose in the folder for temporary ones, that hold the text.
    [[nodiscard]] QStringList filesWith(const QByteArray& text);
    /// What is there for every program of the session to read, and what the program has said.
    [[nodiscard]] QByteArray seenByAll();
    void opensItsFilesToAll();
};

/// The program starts as on a system that writes core files.
void LifeJourneyTest::prepare()
{
    rlimit limit = {};
    QCOMPARE(::getrlimit(RLIMIT_CORE, &limit), 0);
    limit.rlim_cur = limit.rlim_max;
    QCOMPARE(::setrlimit(RLIMIT_CORE, &limit), 0);
    listen();
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

void LifeJourneyTest::aFolderThatGoesIsThereAgain()
{
    copy("kept");
    expectHistory({u"kept"_s});
    const QString away = session().homePath(u"away"_s);
    for (const bool isMoved : {true, false}) {
        const QString folder = tessaly().dataFolder();
        QVERIFY(isMoved ? QDir().rename(folder, away) : QDir(folder).removeRecursively());
        expectHistory({u"kept"_s});
        expect("the folder for the user alone", [this] {
            return QFile::permissions(tessaly().dataFolder()) ==
                   (QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser | QFile::WriteUser |
                    QFile::ExeUser);
        });
        QCOMPARE(session().run(tessaly().program()).exitCode, 0); // finds the first one
        expectPanel();
        press("Escape");
        expectNoPanel();
    }
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
    const auto look = [&](const QString& folder, QDirIterator::IteratorFlag depth) {
        for (QDirIterator all(folder, QDir::Files | QDir::Hidden, depth); all.hasNext();) {
            QFile file(all.next());
            if (file.open(QFile::ReadOnly) && file.readAll().contains(text))
                found.append(all.fileName());
        }
    };
    look(session().homePath({}), QDirIterator::Subdirectories);
    look(QDir::tempPath(), QDirIterator::NoIteratorFlags);
    found.sort();
    return found;
}

QByteArray LifeJourneyTest::seenByAll()
{
    QByteArray seen = tessaly().moments().said() + Xcb::allProperties(session().connection());
    for (const char* view : {"cmdline", "comm", "environ"}) {
        QFile file(u"/proc/%1/%2"_s.arg(tessaly().processID()).arg(QLatin1StringView(view)));
        seen += file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    return seen;
}

void LifeJourneyTest::bringItEverywhere(const QByteArray& text, const QByteArray& secret)
{
    QImage picture(filled({800, 600}, Qt::darkGreen)); // so large that it gets a thumbnail
    picture.setText(u"Comment"_s, QString::fromLatin1(text));
    copy(encoded(picture), asPicture);
    ForeignClient keeper(session());
    keeper.copy({{"UTF8_STRING", {.bytes = secret}}, {"x-kde-passwordManagerHint", {.bytes = "secret"}}});
    expect("the secret to be passed over", [&] { return keeper.isLookedAt(); });
    callUp();
    press("ctrl+e");
    expect("the editor", [this] { return tessaly().editor().value_or(Window()).id == tessaly().activeWindow(); });
    expectStillness();
    const QPoint middle = tessaly().editor().value_or(Window()).geometry.center();
    desktop().drag({middle, middle + QPoint(40, 40), middle + QPoint(80, 80)});
    press("ctrl+c");
    expectNotice("Copied “image”");
    expectEntries(2);
    press("Escape");
    expectNoPanel();
    copyFile(writeFile(QString::fromLatin1(text), "a file"));
    copy(text);
    callUp();
    type(QString::fromLatin1(text));
    press("ctrl+k Escape ctrl+c");
    expectNotice(u"Copied “%1”"_s.arg(QLatin1StringView(text)));
}

void LifeJourneyTest::opensItsFilesToAll()
{
    constexpr auto all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    const auto open = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ReadOther;
    for (QDirIterator entry(tessaly().dataFolder(), all, QDirIterator::Subdirectories); entry.hasNext();)
        QVERIFY(QFile::setPermissions(entry.next(), open));
    QVERIFY(QFile::setPermissions(tessaly().dataFolder(), open));
}

void LifeJourneyTest::contentStaysInTheHistory()
{
    const QByteArray own = QByteArray::number(::getpid());
    const QByteArray marked = "like-no-other-" + own;
    const QByteArray secret = "never-to-be-kept-" + own;
    bringItEverywhere(marked, secret);
    QFile limits(u"/proc/%1/limits"_s.arg(tessaly().processID()));
    QFile dumped(u"/proc/%1/coredump_filter"_s.arg(tessaly().processID()));
    QVERIFY(limits.open(QFile::ReadOnly) && dumped.open(QFile::ReadOnly));
    QVERIFY(limits.readAll().contains("Max core file size        0 "));
    QCOMPARE(dumped.readAll(), "00000000\n");
    const QByteArray seen = seenByAll();
    QVERIFY(seen.contains("_NET_WM_NAME") && seen.contains("tessaly.timing captured") && seen.contains("DISPLAY="));
    QVERIFY(!seen.contains(marked) && !seen.contains(secret));
    endTessaly();
    QCOMPARE(filesWith(marked), QStringList{u"history.json"_s});
    QCOMPARE(filesWith(secret), QStringList());

    opensItsFilesToAll(); // as those of a system that was restored from somewhere
    startTessaly();
    const auto isPrivate = [](const QString& path) {
        return (QFile::permissions(path) & QFile::Permissions(0x77)) == QFile::Permissions();
    };
    expect("files for the user alone", [&] {
        constexpr auto all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        bool areAll = isPrivate(tessaly().dataFolder());
        for (QDirIterator entry(tessaly().dataFolder(), all, QDirIterator::Subdirectories); entry.hasNext();)
            areAll = isPrivate(entry.next()) && areAll;
        return areAll;
    });
    callUp();
    press("shift+Delete shift+Delete shift+Delete shift+Delete Escape");
    endTessaly();
    QCOMPARE(filesWith(marked), QStringList());
    QCOMPARE(QDir(tessaly().dataFolder() + u"/images"_s).entryList(QDir::Files), QStringList());
    QCOMPARE(QDir(tessaly().dataFolder() + u"/images/thumbnails"_s).entryList(QDir::Files), QStringList());
}

QTEST_GUILESS_MAIN(LifeJourneyTest)
#include "LifeJourneyTest.moc"
