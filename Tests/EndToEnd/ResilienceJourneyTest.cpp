#include "ForeignClient.h"
#include "RunningTessaly.h"
#include "VirtualSession.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTest>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

/// What other programs and accidents do to a clipboard, and what the history makes of it.
class ResilienceJourneyTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aStoppedOwnerHoldsNothingUp();
    void recordsALargeText();
    void recordsALargePicture();
    void contentOutlivesItsProgram();
    void aDeliberateClearStays();
    void aKillDuringASaveLeavesAWholeFile();

private:
    void copy(const QByteArray& content, const QString& target = u"UTF8_STRING"_s);
    [[nodiscard]] QByteArray pasted();
    [[nodiscard]] QStringList folderState() const;

    std::unique_ptr<VirtualSession> m_session;
    std::unique_ptr<RunningTessaly> m_tessaly;
};

void ResilienceJourneyTest::init()
{
    m_session = std::make_unique<VirtualSession>();
    QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
    m_tessaly = std::make_unique<RunningTessaly>(*m_session, QStringLiteral(TESSALY_PROGRAM));
    QVERIFY(m_tessaly->start());
}

void ResilienceJourneyTest::cleanup()
{
    if (m_tessaly && m_tessaly->isRunning()) {
        QCOMPARE(m_tessaly->stop(SIGTERM), 0);
    }
    m_tessaly.reset();
    m_session.reset();
}

void ResilienceJourneyTest::copy(const QByteArray& content, const QString& target)
{
    m_session->run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, target, u"-i"_s}, content);
}

QByteArray ResilienceJourneyTest::pasted()
{
    return m_session->run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s}).output;
}

/// Name, size and time of each file beside the history: it differs as soon as a save has begun.
QStringList ResilienceJourneyTest::folderState() const
{
    QStringList state;
    for (const QFileInfo& file : QDir(m_tessaly->dataFolder()).entryInfoList(QDir::Files | QDir::Hidden)) {
        state.append(u"%1 %2 %3"_s.arg(file.fileName()).arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch()));
    }
    return state;
}

void ResilienceJourneyTest::aStoppedOwnerHoldsNothingUp()
{
    ForeignClient hung(*m_session);
    hung.copyAndHang();

    m_tessaly->press(u"super+shift+v"_s);
    QVERIFY(m_tessaly->waitForPanel(true));
    copy("after the stopped one");
    QVERIFY(m_tessaly->waitForNewest(u"after the stopped one"_s));
    QCOMPARE(m_tessaly->history()->size(), 1);
}

void ResilienceJourneyTest::recordsALargeText()
{
    constexpr int lines = 500'000;
    QByteArray text;
    for (int i = 0; i < lines; ++i) {
        text += QByteArray::number(i).rightJustified(8, '0') +
                " the quick brown fox jumps over the lazy dog, and again, and on and on it goes\n";
    }
    QVERIFY(text.size() > 40'000'000);
    copy(text);
    QVERIFY(m_tessaly->waitForHistory([](const auto& entries) { return entries.size() == 1; }));
    QVERIFY(m_tessaly->history()->first().content == QString::fromUtf8(text));
}

void ResilienceJourneyTest::recordsALargePicture()
{
    const QString picture = m_session->homePath(u"large.png"_s);
    QCOMPARE(m_session->run(u"convert"_s, {u"-size"_s, u"3840x2160"_s, u"gradient:red-blue"_s, picture}).exitCode, 0);
    QFile file(picture);
    QVERIFY(file.open(QFile::ReadOnly));
    copy(file.readAll(), u"image/png"_s);

    QVERIFY(m_tessaly->waitForHistory([](const auto& entries) { return entries.size() == 1; }));
    const QString stored = m_tessaly->history()->first().content;
    const QByteArray size = m_session->run(u"identify"_s, {u"-format"_s, u"%m %wx%h"_s, stored}).output;
    QCOMPARE(size, "PNG 3840x2160");
}

void ResilienceJourneyTest::contentOutlivesItsProgram()
{
    QProcess& owner = m_session->start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s}, "left behind");
    QVERIFY(m_tessaly->waitForCaptures(1));
    m_session->kill(owner);
    QVERIFY(m_session->waitUntil([&] { return pasted() == "left behind"; }));
    // To take it over was no copy.
    QVERIFY(m_tessaly->waitForNewest(u"left behind"_s));
    copy("next");
    QVERIFY(m_tessaly->waitForNewest(u"next"_s));
    QCOMPARE(m_tessaly->history()->size(), 2);
}

void ResilienceJourneyTest::aDeliberateClearStays()
{
    ForeignClient manager(*m_session);
    ForeignClient client(*m_session, "CLIPBOARD_MANAGER");
    manager.copyText("for a minute only");
    QVERIFY(m_tessaly->waitForCaptures(1));
    manager.clear();
    QVERIFY(!client.targets().isEmpty()); // who answers that has met the end of the ownership before
    QCOMPARE(m_session->selectionOwner("CLIPBOARD"), 0U);
    QVERIFY(pasted().isEmpty());
}

void ResilienceJourneyTest::aKillDuringASaveLeavesAWholeFile()
{
    constexpr int rounds = 8;
    const QByteArray filling(2'000'000, 'x'); // saves take long enough to be hit
    for (int round = 0; round < rounds; ++round) {
        copy(filling + QByteArray::number(round));
        QVERIFY(m_tessaly->waitForCaptures(1));
        const QStringList before = folderState();
        QVERIFY(m_session->waitUntil([&] { return folderState() != before; }));
        QTest::qSleep(round); // some rounds before the rename, some after
        m_tessaly->stop(SIGKILL);

        if (QFile::exists(m_tessaly->historyFile())) {
            QVERIFY(m_tessaly->history().has_value());
        }
        QVERIFY(m_tessaly->start());
    }
    // What a killed writer left lying about is gone or harmless: the next save works.
    copy("the end");
    QVERIFY(m_tessaly->waitForNewest(u"the end"_s));
}

QTEST_GUILESS_MAIN(ResilienceJourneyTest)

#include "ResilienceJourneyTest.moc"
