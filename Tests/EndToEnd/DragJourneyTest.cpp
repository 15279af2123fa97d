#include "RunningTessaly.h"
#include "VirtualSession.h"

#include <QFile>
#include <QTest>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

namespace {

// Where the rows of the list are, from the panel's top left corner.
constexpr int listTop = 96;
constexpr int rowHeight = 44;
constexpr int rowCentre = 120;

} // namespace

/// Entries that are dragged out of the list with a real pointer.
class DragJourneyTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void takesATextIntoAnEditor();
    void opensAFileInAnEditor();
    void changesNothingWithinThePanel();

private:
    void copy(const QByteArray& content, const QString& target);
    void drag(int row, QPoint to);
    [[nodiscard]] bool waitForWindow(const QString& title) const;

    std::unique_ptr<VirtualSession> m_session;
    std::unique_ptr<RunningTessaly> m_tessaly;
    QString m_letter; // the document in an editor beside the panel
};

void DragJourneyTest::init()
{
    m_session = std::make_unique<VirtualSession>(VirtualSession::Options{.trayHost = true});
    QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
    m_tessaly = std::make_unique<RunningTessaly>(*m_session, QStringLiteral(TESSALY_PROGRAM));
    QVERIFY(m_tessaly->start());
    m_letter = m_session->homePath(u"letter.txt"_s);
    const QString report = m_session->homePath(u"report.txt"_s);
    QVERIFY(QFile(m_letter).open(QFile::WriteOnly) && QFile(report).open(QFile::WriteOnly));
    copy("file://" + report.toUtf8(), u"text/uri-list"_s);
    copy("to be dragged", u"UTF8_STRING"_s);

    m_session->start(u"mousepad"_s, {u"--disable-server"_s, m_letter});
    QVERIFY(waitForWindow(u"letter.txt"_s));
    m_session->run(u"xdotool"_s, {u"getactivewindow"_s, u"windowsize"_s, u"--sync"_s, u"400"_s, u"300"_s,
                                  u"windowmove"_s, u"--sync"_s, u"10"_s, u"450"_s});
    m_tessaly->press(u"super+shift+v"_s);
    QVERIFY(m_tessaly->waitForPanel(true));
}

void DragJourneyTest::cleanup()
{
    if (m_tessaly && m_tessaly->isRunning())
        QCOMPARE(m_tessaly->stop(SIGTERM), 0);
    m_tessaly.reset();
    m_session.reset();
}

void DragJourneyTest::copy(const QByteArray& content, const QString& target)
{
    m_session->run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, target}, content);
    QVERIFY(m_tessaly->waitForCaptures(1));
}

/// As a hand does it: in steps, so that the programs below the pointer can answer.
void DragJourneyTest::drag(int row, QPoint to)
{
    const QPoint from =
        m_tessaly->panel()->geometry.topLeft() + QPoint(rowCentre, listTop + row * rowHeight + rowHeight / 2);
    constexpr int steps = 8;
    QStringList moves{u"mousemove"_s, QString::number(from.x()), QString::number(from.y()), u"mousedown"_s, u"1"_s};
    for (int i = 1; i <= steps; ++i) {
        const QPoint place = from + (to - from) * i / steps;
        moves += {u"sleep"_s, u"0.05"_s, u"mousemove"_s, QString::number(place.x()), QString::number(place.y())};
    }
    m_session->run(u"xdotool"_s, moves + QStringList{u"sleep"_s, u"0.3"_s});
    QVERIFY(m_tessaly->panel().has_value()); // it stays while the entry is on its way
    m_session->run(u"xdotool"_s, {u"mouseup"_s, u"1"_s});
}

bool DragJourneyTest::waitForWindow(const QString& title) const
{
    return m_session->waitUntil([&] {
        return m_session->run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, title}).exitCode == 0;
    });
}

void DragJourneyTest::takesATextIntoAnEditor()
{
    drag(0, {200, 650});
    QVERIFY(waitForWindow(u"^\\*.*letter.txt"_s)); // it has unsaved changes
    m_tessaly->press(u"Escape"_s);
    QVERIFY(m_tessaly->waitForPanel(false));
    m_tessaly->press(u"ctrl+s"_s);
    QVERIFY(m_session->waitUntil([&] {
        QFile file(m_letter);
        return file.open(QFile::ReadOnly) && file.readAll().contains("to be dragged");
    }));
}

void DragJourneyTest::opensAFileInAnEditor()
{
    drag(1, {200, 650});
    QVERIFY(waitForWindow(u"report.txt"_s));
}

void DragJourneyTest::changesNothingWithinThePanel()
{
    drag(0, m_tessaly->panel()->geometry.topLeft() + QPoint(200, 25)); // the search field
    m_tessaly->press(u"Escape"_s);                                     // would clear a query first
    QVERIFY(m_tessaly->waitForPanel(false));
}

QTEST_GUILESS_MAIN(DragJourneyTest)

#include "DragJourneyTest.moc"
