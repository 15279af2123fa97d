#include "RunningTessaly.h"
#include "VirtualSession.h"

#include <QTest>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

/// How the program begins and ends, as a session and a person at a terminal see it.
class LifeJourneyTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void endsCleanlyWithThePanelOpen_data();
    void endsCleanlyWithThePanelOpen();
    void aSecondStartOpensThePanelOfTheFirst();
    void answersWithoutADisplay_data();
    void answersWithoutADisplay();

private:
    std::unique_ptr<VirtualSession> m_session;
    std::unique_ptr<RunningTessaly> m_tessaly;
};

void LifeJourneyTest::init()
{
    m_session = std::make_unique<VirtualSession>();
    QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
    m_tessaly = std::make_unique<RunningTessaly>(*m_session, QStringLiteral(TESSALY_PROGRAM));
    QVERIFY(m_tessaly->start());
}

void LifeJourneyTest::cleanup()
{
    if (m_tessaly && m_tessaly->isRunning()) {
        QCOMPARE(m_tessaly->stop(SIGTERM), 0);
    }
    m_tessaly.reset();
    m_session.reset();
}

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
    m_session->run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s}, "just copied");
    QVERIFY(m_tessaly->waitForCaptures(1));
    m_tessaly->press(u"super+shift+v"_s);
    QVERIFY(m_tessaly->waitForPanel(true));

    QCOMPARE(m_tessaly->stop(signal), 0);
    const auto history = m_tessaly->history(); // although the save was not due yet
    QVERIFY(history);
    QCOMPARE(history->size(), 1);
    QCOMPARE(history->first().content, u"just copied"_s);
}

void LifeJourneyTest::aSecondStartOpensThePanelOfTheFirst()
{
    const QString program = QStringLiteral(TESSALY_PROGRAM);
    for (int i = 0; i < 2; ++i) { // also when it is open
        const VirtualSession::Result second = m_session->run(program);
        QCOMPARE(second.exitCode, 0);
        QVERIFY2(second.errors.contains("already running (process " + QByteArray::number(m_tessaly->processID())),
                 second.errors.constData());
        QVERIFY(m_tessaly->waitForPanel(true));
    }
    QVERIFY(m_tessaly->isRunning());

    // A process that was killed leaves no lock behind.
    QCOMPARE(m_tessaly->stop(SIGKILL), -1);
    QVERIFY(m_tessaly->start());
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
        m_session->run(u"env"_s, QStringList{u"-u"_s, u"DISPLAY"_s, QStringLiteral(TESSALY_PROGRAM)} + arguments);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY2((result.output + result.errors).contains(answer), (result.output + result.errors).constData());
}

QTEST_GUILESS_MAIN(LifeJourneyTest)
#include "LifeJourneyTest.moc"
