#include "ForeignClient.h"
#include "JourneyTest.h"

#include <QFile>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

/// What other programs and accidents do to a clipboard, and what the history makes of it.
class ResilienceJourneyTest final : public JourneyTest
{
    Q_OBJECT

private slots:
    void aHungOwnerHoldsNothingUp();
    void recordsWhatIsLarge();
    void whatBreaksOffIsNoCopy();
    void contentOutlivesItsProgram();
    void aDeliberateClearStays();
    void noKillLosesACopy();
    void savesEverythingWhenTheDisplayIsGone();
    void startsAnewWhenTheDisplayIsBack();

private:
    /// In the history or its journal.
    [[nodiscard]] bool isOnDisk(const QByteArray& text);
};

void ResilienceJourneyTest::aHungOwnerHoldsNothingUp()
{
    const auto hung = desktop().otherProgram();
    hung->copy({{"UTF8_STRING", {.manner = ForeignOwner::Answer::Manner::Mute}}});
    expect("a question to it", [&] { return !hung->contentAsked().isEmpty(); });
    callUp();
    copy("after the hung one");
    expectHistory({u"after the hung one"_s});
}

void ResilienceJourneyTest::recordsWhatIsLarge()
{
    const QStringList drawing{u"-size"_s, u"3840x2160"_s, u"gradient:red-blue"_s, u"png:-"_s};
    copy(session().run(u"convert"_s, drawing).output, asPicture);
    expectEntries(1);
    QCOMPARE(session().run(u"identify"_s, {u"-format"_s, u"%m %wx%h"_s, newest().content}).output, "PNG 3840x2160");

    QByteArray content;
    for (int i = 0; i < 500'000; ++i) {
        content += QByteArray::number(i).rightJustified(8, '0') +
                   " the quick brown fox jumps over the lazy dog, and again, and on and on it goes\n";
    }
    copy(content);
    expectEntries(2);
    QVERIFY(newest().content == QString::fromUtf8(content));
    copy("small");
    callUp();
    press("Down ctrl+c");
    expectClipboard(content);
}

void ResilienceJourneyTest::whatBreaksOffIsNoCopy()
{
    const QByteArray text(1'000'000, 'x');
    for (const auto manner : {ForeignOwner::Answer::Manner::DieInTheMiddle, ForeignOwner::Answer::Manner::InPieces}) {
        const auto owner = desktop().otherProgram();
        owner->copy({{"UTF8_STRING", {.bytes = text, .manner = manner}}});
        expect("a question to it", [&] { return !owner->contentAsked().isEmpty(); });
        if (manner == ForeignOwner::Answer::Manner::InPieces)
            expectCapture();
    }
    expectHistory({QString::fromLatin1(text)});
}

void ResilienceJourneyTest::contentOutlivesItsProgram()
{
    const QByteArray large(5'000'000, 'x'); // beyond what is handed over in one piece
    for (const QByteArray& content : {QByteArray("left behind"), large}) {
        const auto owner = desktop().otherProgram();
        owner->copyText(content);
        expectCapture();
        owner->die();
        expectClipboard(content);
    }
    // To take it over was no copy.
    copy("next");
    expectHistory({u"next"_s, QString::fromLatin1(large), u"left behind"_s});
}

void ResilienceJourneyTest::aDeliberateClearStays()
{
    if (!isOnX11())
        QSKIP("on Wayland nobody can tell a cleared clipboard from one whose program has ended");
    ForeignClient passwords(session());
    passwords.copyText("for a minute only");
    expectCapture();
    passwords.clear();
    expectNewest("for a minute only");
    QCOMPARE(session().run(tessaly().program(), u"config set forgetCleared true"_s.split(u' ')).exitCode, 0);
    copy("kept");
    passwords.copyText("for a minute only");
    expectCapture();
    expectEntries(2);
    passwords.clear();
    expectHistory({u"kept"_s});
    // Who answers for the clipboard's manager has met the end of the ownership before.
    ForeignClient other(session(), "CLIPBOARD_MANAGER");
    QVERIFY(!other.targets().isEmpty());
    QCOMPARE(session().selectionOwner("CLIPBOARD"), 0U);
}

bool ResilienceJourneyTest::isOnDisk(const QByteArray& text)
{
    const auto holds = [&text](const QString& path) {
        QFile file(path);
        return file.open(QFile::ReadOnly) && file.readAll().contains('"' + text + '"');
    };
    return holds(tessaly().dataFolder() + u"/history.journal"_s) || holds(tessaly().historyFile());
}

void ResilienceJourneyTest::noKillLosesACopy()
{
    constexpr int rounds = 8;
    const QByteArray filling(2'000'000, 'x'); // saves of it take long enough to be hit
    for (int round = 0; round < rounds; ++round) {
        const QByteArray text = QByteArray::number(round) + (round % 2 == 0 ? filling : QByteArray());
        copy(text);
        expect("the copy on the disk", [&] { return isOnDisk(text); });
        endTessaly(SIGKILL);
        QVERIFY(!QFile::exists(tessaly().historyFile()) || tessaly().history());
        startTessaly();
    }
    copy(filling + "the end");
    expectEntries(rounds + 1);
}

void ResilienceJourneyTest::savesEverythingWhenTheDisplayIsGone()
{
    callUp();
    copy("just before the crash"); // the save that waits for a pause of a second is still to come
    copyUnrecorded("on its way");
    session().crashDisplay();
    expect("its end", [this] { return !tessaly().isRunning(); });
    QCOMPARE(tessaly().exitCode(), 1); // not aborted
    QVERIFY(contents().contains(u"just before the crash"_s));
}

void ResilienceJourneyTest::startsAnewWhenTheDisplayIsBack()
{
    if (!isOnKwin())
        QSKIP("the windows' display is the session, and ends with it");
    endTessaly();
    session().setEnvironment(u"QT_QPA_PLATFORM"_s, u"xcb"_s); // its windows are those of Xwayland
    startTessaly();
    copy("before");
    session().crashXwayland();
    expect("its start", [this] { return tessaly().moments().next("watching", 0).has_value(); });
    copy("after");
    expectHistory({u"after"_s, u"before"_s});
}

QTEST_GUILESS_MAIN(ResilienceJourneyTest)
#include "ResilienceJourneyTest.moc"
