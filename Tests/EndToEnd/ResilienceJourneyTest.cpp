#include "ForeignClient.h"
#include "JourneyTest.h"

#include <QDateTime>
#include <QDir>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

/// What other programs and accidents do to a clipboard, and what the history makes of it.
class ResilienceJourneyTest final : public JourneyTest
{
    Q_OBJECT

private slots:
    void aHungOwnerHoldsNothingUp();
    void recordsALargeText();
    void recordsALargePicture();
    void contentOutlivesItsProgram();
    void aDeliberateClearStays();
    void aKillDuringASaveLeavesAWholeFile();

private:
    [[nodiscard]] QHash<QString, QDateTime> savedFiles();
    /// The bytes of the files that were written since.
    [[nodiscard]] qint64 bytesWrittenSince(const QHash<QString, QDateTime>& before);
};

void ResilienceJourneyTest::aHungOwnerHoldsNothingUp()
{
    ForeignClient hung(session());
    hung.copyAndHang();
    expect("a question to it", [&] { return !hung.asked().isEmpty(); });
    callUp();
    copy("after the hung one");
    expectHistory({u"after the hung one"_s});
}

void ResilienceJourneyTest::recordsALargeText()
{
    constexpr int lines = 500'000;
    QByteArray content;
    for (int i = 0; i < lines; ++i) {
        content += QByteArray::number(i).rightJustified(8, '0') +
                   " the quick brown fox jumps over the lazy dog, and again, and on and on it goes\n";
    }
    copy(content);
    expectEntries(1);
    QVERIFY(newest().content == QString::fromUtf8(content));
}

void ResilienceJourneyTest::recordsALargePicture()
{
    const QStringList drawing{u"-size"_s, u"3840x2160"_s, u"gradient:red-blue"_s, u"png:-"_s};
    copy(session().run(u"convert"_s, drawing).output, asPicture);
    expectEntries(1);
    QCOMPARE(session().run(u"identify"_s, {u"-format"_s, u"%m %wx%h"_s, newest().content}).output, "PNG 3840x2160");
}

void ResilienceJourneyTest::contentOutlivesItsProgram()
{
    {
        ForeignClient owner(session());
        owner.copyText("left behind");
        expectCapture();
    }
    expectClipboard("left behind");
    // To take it over was no copy.
    copy("next");
    expectHistory({u"next"_s, u"left behind"_s});
}

void ResilienceJourneyTest::aDeliberateClearStays()
{
    ForeignClient passwords(session());
    passwords.copyText("for a minute only");
    expectCapture();
    passwords.clear();
    // Who answers for the clipboard's manager has met the end of the ownership before.
    ForeignClient other(session(), "CLIPBOARD_MANAGER");
    QVERIFY(!other.targets().isEmpty());
    QCOMPARE(session().selectionOwner("CLIPBOARD"), 0U);
}

QHash<QString, QDateTime> ResilienceJourneyTest::savedFiles()
{
    QHash<QString, QDateTime> files;
    for (const QFileInfo& file : QDir(tessaly().dataFolder()).entryInfoList(QDir::Files | QDir::Hidden))
        files.insert(file.filePath(), file.lastModified());
    return files;
}

qint64 ResilienceJourneyTest::bytesWrittenSince(const QHash<QString, QDateTime>& before)
{
    qint64 sum = 0;
    const QHash<QString, QDateTime> now = savedFiles();
    for (const auto& [path, time] : now.asKeyValueRange())
        sum += before.value(path) != time ? QFileInfo(path).size() : 0;
    return sum;
}

void ResilienceJourneyTest::aKillDuringASaveLeavesAWholeFile()
{
    constexpr int rounds = 8;
    const QByteArray filling(2'000'000, 'x'); // saves take long enough to be hit
    for (int round = 0; round < rounds; ++round) {
        copy(filling + QByteArray::number(round));
        // Some rounds as soon as the save has begun, some near its end or after the rename.
        const QHash<QString, QDateTime> before = savedFiles();
        const qint64 whole = (contents().size() + 1) * filling.size();
        expect("a part of the save", [&] { return bytesWrittenSince(before) > whole * round / rounds; });
        endTessaly(SIGKILL);
        QVERIFY(!QFile::exists(tessaly().historyFile()) || tessaly().history());
        startTessaly();
    }
    // What a killed writer left lying about is gone or harmless: the next save works.
    copy("the end");
    expectNewest("the end");
}

QTEST_GUILESS_MAIN(ResilienceJourneyTest)
#include "ResilienceJourneyTest.moc"
