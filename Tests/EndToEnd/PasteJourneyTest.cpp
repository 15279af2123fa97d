#include "RunningTessaly.h"
#include "VirtualSession.h"

#include <QFile>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

namespace {

const QString hotKey = u"super+shift+v"_s;

// Where the rows of the list are, from the panel's top left corner.
constexpr int listTop = 96;
constexpr int rowHeight = 44;
constexpr int rowCentre = 120;

} // namespace

/// From the hot key to a paste in another program, and the ways out of the panel.
class PasteJourneyTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void pastesIntoATerminal();
    void pastesIntoAnEditor();
    void pastesADoubleClickedRow();
    void closesAndGivesTheFocusBack_data();
    void closesAndGivesTheFocusBack();
    void tellsThatAFileIsGone_data();
    void tellsThatAFileIsGone();
    void trayIconTogglesThePanel();
    void quitsFromTheMenu();

private:
    void copy(const QByteArray& content, const QString& target = u"UTF8_STRING"_s);
    void openTerminal();
    [[nodiscard]] QByteArray typedIntoTerminal() const;
    [[nodiscard]] QStringList contents() const;
    void openPanel();
    [[nodiscard]] bool waitForNotice(const QString& text);

    std::unique_ptr<VirtualSession> m_session;
    std::unique_ptr<RunningTessaly> m_tessaly;
    quint32 m_front = 0; // the window that was active before the panel
};

void PasteJourneyTest::init()
{
    m_session = std::make_unique<VirtualSession>(VirtualSession::Options{.trayHost = true});
    QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
    m_tessaly = std::make_unique<RunningTessaly>(*m_session, QStringLiteral(TESSALY_PROGRAM));
    QVERIFY(m_tessaly->start());
    copy("alpha");
    copy("beta");
    copy("gamma");
}

void PasteJourneyTest::cleanup()
{
    if (m_tessaly && m_tessaly->isRunning()) {
        QCOMPARE(m_tessaly->stop(SIGTERM), 0);
    }
    m_tessaly.reset();
    m_session.reset();
}

void PasteJourneyTest::copy(const QByteArray& content, const QString& target)
{
    m_session->run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, target, u"-i"_s}, content);
    QVERIFY(m_tessaly->waitForCaptures(1));
}

/// A terminal at the bottom left, out of the panel's way; each line typed into it ends up in a file.
void PasteJourneyTest::openTerminal()
{
    m_session->start(u"xterm"_s, {u"-geometry"_s, u"60x10+0-0"_s, u"-T"_s, u"the terminal"_s, u"-e"_s,
                                  u"cat > '%1'"_s.arg(m_session->homePath(u"typed"_s))});
    QVERIFY(m_session->waitUntil([&] {
        return m_session->run(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s}).output.contains("the terminal");
    }));
    m_front = m_tessaly->activeWindow();
}

QByteArray PasteJourneyTest::typedIntoTerminal() const
{
    QFile file(m_session->homePath(u"typed"_s));
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList PasteJourneyTest::contents() const
{
    QStringList result;
    for (const RunningTessaly::Entry& entry : m_tessaly->history().value_or(QList<RunningTessaly::Entry>())) {
        result.append(entry.content);
    }
    return result;
}

void PasteJourneyTest::openPanel()
{
    m_tessaly->press(hotKey);
    QVERIFY(m_tessaly->waitForPanel(true));
}

bool PasteJourneyTest::waitForNotice(const QString& text)
{
    return m_session->waitUntil([&] {
        const std::optional<RunningTessaly::Window> toast = m_tessaly->toast();
        return toast && toast->title == text;
    });
}

void PasteJourneyTest::pastesIntoATerminal()
{
    openTerminal();
    openPanel();
    m_tessaly->type(u"alph"_s);
    m_tessaly->press(u"Return"_s);
    QVERIFY(waitForNotice(u"Pasted “alpha”"_s));
    QVERIFY(m_tessaly->waitForPanel(false));
    QCOMPARE(m_tessaly->activeWindow(), m_front);

    m_tessaly->press(u"Return"_s); // ends the line
    QVERIFY(m_session->waitUntil([&] { return typedIntoTerminal() == "alpha\n"; }));
    QVERIFY(m_tessaly->waitForNewest(u"alpha"_s));
    // What the paste put on the clipboard was no copy: once a later one is recorded, it would be there.
    copy("delta");
    QVERIFY(m_tessaly->waitForNewest(u"delta"_s));
    QCOMPARE(contents(), QStringList({u"delta"_s, u"alpha"_s, u"gamma"_s, u"beta"_s}));
}

void PasteJourneyTest::pastesIntoAnEditor()
{
    const QString document = m_session->homePath(u"letter.txt"_s);
    QVERIFY(QFile(document).open(QFile::WriteOnly));
    m_session->start(u"mousepad"_s, {u"--disable-server"_s, document});
    QVERIFY(m_session->waitUntil([&] {
        return m_session->run(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s}).output.contains("letter.txt");
    }));
    openPanel();
    m_tessaly->type(u"bet"_s);
    m_tessaly->press(u"Return"_s);
    QVERIFY(waitForNotice(u"Pasted “beta”"_s));

    m_tessaly->press(u"ctrl+s"_s);
    QVERIFY(m_session->waitUntil([&] {
        QFile file(document);
        return file.open(QFile::ReadOnly) && file.readAll().trimmed() == "beta";
    }));
}

void PasteJourneyTest::pastesADoubleClickedRow()
{
    openTerminal();
    openPanel();
    const QPoint second(rowCentre, listTop + rowHeight + rowHeight / 2);
    m_tessaly->click(m_tessaly->panel()->geometry.topLeft() + second, 2);
    QVERIFY(waitForNotice(u"Pasted “beta”"_s));
    m_tessaly->press(u"Return"_s);
    QVERIFY(m_session->waitUntil([&] { return typedIntoTerminal() == "beta\n"; }));
}

void PasteJourneyTest::closesAndGivesTheFocusBack_data()
{
    QTest::addColumn<QString>("key"); // none: a click into the terminal

    QTest::newRow("Escape") << u"Escape"_s;
    QTest::newRow("the hot key again") << hotKey;
    QTest::newRow("a click outside") << QString();
}

void PasteJourneyTest::closesAndGivesTheFocusBack()
{
    QFETCH(const QString, key);

    openTerminal();
    openPanel();
    if (key.isEmpty()) {
        m_tessaly->click({100, 790});
    } else {
        m_tessaly->press(key);
    }
    QVERIFY(m_tessaly->waitForPanel(false));
    QVERIFY(m_session->waitUntil([&] { return m_tessaly->activeWindow() == m_front; }));
    m_tessaly->type(u"here\n"_s);
    QVERIFY(m_session->waitUntil([&] { return typedIntoTerminal() == "here\n"; }));

    openPanel(); // and it comes back
}

void PasteJourneyTest::tellsThatAFileIsGone_data()
{
    QTest::addColumn<bool>("pinned");
    QTest::addColumn<QString>("notice");
    QTest::addColumn<bool>("kept");

    QTest::newRow("not pinned") << false << u"File no longer exists — removed from history"_s << false;
    QTest::newRow("pinned") << true << u"File not found"_s << true;
}

void PasteJourneyTest::tellsThatAFileIsGone()
{
    QFETCH(const bool, pinned);
    QFETCH(const QString, notice);
    QFETCH(const bool, kept);

    const QString path = m_session->homePath(u"passing.txt"_s);
    QVERIFY(QFile(path).open(QFile::WriteOnly));
    copy("file://" + path.toUtf8(), u"text/uri-list"_s);
    QVERIFY(QFile::remove(path));

    openTerminal();
    openPanel();
    if (pinned) {
        m_tessaly->press(u"ctrl+p"_s);
    }
    m_tessaly->press(u"Return"_s);
    QVERIFY(waitForNotice(notice));
    QVERIFY(m_tessaly->waitForHistory([&](const auto& entries) {
        const bool found = std::ranges::any_of(entries, [&](const auto& entry) { return entry.content == path; });
        return entries.size() >= 3 && found == kept;
    }));
    // The clipboard was not touched.
    QCOMPARE(m_session->run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s, u"-t"_s, u"text/uri-list"_s}).output,
             "file://" + path.toUtf8());
}

void PasteJourneyTest::trayIconTogglesThePanel()
{
    QVERIFY(m_session->waitUntil([&] { return m_tessaly->trayIcon().has_value(); }));
    const QPoint icon = m_tessaly->trayIcon()->geometry.center();
    m_tessaly->click(icon);
    QVERIFY(m_tessaly->waitForPanel(true));
    // Below the icon and within the screen, by the margins that the placement keeps.
    const QRect panel = m_tessaly->panel()->geometry;
    QVERIFY(panel.right() <= 1280 - 8);
    QVERIFY(panel.top() >= icon.y());
    m_tessaly->click(icon);
    QVERIFY(m_tessaly->waitForPanel(false));
}

void PasteJourneyTest::quitsFromTheMenu()
{
    QVERIFY(m_session->waitUntil([&] { return m_tessaly->trayIcon().has_value(); }));
    m_tessaly->click(m_tessaly->trayIcon()->geometry.center(), 1, 3);
    QVERIFY(m_session->waitUntil([&] { return m_tessaly->windows().size() == 2; })); // the icon and the menu
    m_tessaly->press(u"Up"_s);                                                       // from the end: Quit
    m_tessaly->press(u"Return"_s);
    QVERIFY(m_session->waitUntil([&] { return !m_tessaly->isRunning(); }));
    QCOMPARE(contents(), QStringList({u"gamma"_s, u"beta"_s, u"alpha"_s}));
}

QTEST_GUILESS_MAIN(PasteJourneyTest)

#include "PasteJourneyTest.moc"
