#include "JourneyTest.h"

#include <QFile>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fstream>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

/// From the hot key to a paste in another program, and the ways out of the panel.
class PasteJourneyTest final : public JourneyTest
{
    Q_OBJECT
public:
    PasteJourneyTest()
        : JourneyTest({.trayHost = true})
    {
    }

private slots:
    void pastesIntoATerminal();
    void pastesIntoAnEditor();
    void pastesByTheLayoutInForce();
    void closesAndGivesTheFocusBack();
    void staysOpenUnderAPassingPointer();
    void keepsTheBytesOfAFilesName();
    void tellsThatAFileIsGone();
    void trayIconHasThePanelAndTheMenu();
    void opensWhereTheUserWorks();

private:
    void prepare() override { listen(); }
    void arrive() override;
    /// Where a terminal is then; all of that screen.
    QRect workOnOneOfTwoScreens();
};

void PasteJourneyTest::arrive()
{
    for (const char* content : {"alpha", "beta", "gamma"})
        copy(content);
}

void PasteJourneyTest::pastesIntoATerminal()
{
    openTerminal();
    callUp();
    type("alph");
    press("Return");
    expectNotice("Pasted “alpha”");
    expectNoPanel();
    expectFront("the terminal");
    expectFile(typedFile(), "alpha");
    // What the paste put on the clipboard was no copy: once a later one is recorded, it would be there.
    copy("delta");
    expectHistory({u"delta"_s, u"alpha"_s, u"gamma"_s, u"beta"_s});
}

void PasteJourneyTest::pastesIntoAnEditor()
{
    const QString document = openDocument(u"letter.txt"_s);
    callUp();
    click(row(1), 2);
    expectNotice("Pasted “beta”");
    expectFront("*"); // the text has arrived
    press("ctrl+s");
    expectFile(document, "beta");
    QFile libraries(u"/proc/%1/maps"_s.arg(tessaly().processID()));
    QVERIFY(libraries.open(QFile::ReadOnly));
    const QByteArray loaded = libraries.readAll();
    QVERIFY(loaded.contains("/libQt6Widgets") && !loaded.contains("_dri.so")); // nothing that drives graphics cards
}

void PasteJourneyTest::pastesByTheLayoutInForce()
{
    if (!isOnKwin())
        QSKIP("only Plasma has keys pressed on the user's own keyboard");
    writeFile(u".config/kxkbrc"_s, "[Layout]\nUse=true\nLayoutList=us,us\nVariantList=,dvorak\n");
    session().run(u"dbus-send"_s, {u"--type=signal"_s, u"/Layouts"_s, u"org.kde.keyboard.reloadConfig"_s});
    const auto choose = [this](const QString& layout) {
        const QString call =
            u"--print-reply --dest=org.kde.keyboard /Layouts org.kde.KeyboardLayouts.setLayout uint32:%1"_s;
        expect("the layout " + layout.toLatin1(), [&] {
            return session().run(u"dbus-send"_s, call.arg(layout).split(u' ')).output.contains("boolean true");
        });
    };
    const QString document = openDocument(u"letter.txt"_s);
    choose(u"1"_s);
    QCOMPARE(session().run(tessaly().program(), {u"toggle"_s}).exitCode, 0); // its key is another one now
    expectPanel();
    press("Return");
    expectNotice("Pasted “gamma”");
    expectFront("*");
    choose(u"0"_s);
    press("ctrl+s");
    expectFile(document, "gamma");
}

void PasteJourneyTest::closesAndGivesTheFocusBack()
{
    openTerminal();
    QByteArray lines;
    for (const char* key : {"Escape", "", "super+shift+v"}) {
        callUp();
        if (*key == 0)
            click({100, 790}); // into the terminal
        else
            press(key);
        expectNoPanel();
        expectFront("the terminal");
        type("here\n");
        lines += "here\n";
        expectFile(typedFile(), lines);
    }
}

void PasteJourneyTest::staysOpenUnderAPassingPointer()
{
    if (!isOnX11())
        QSKIP("a click gives the keyboard on the Wayland desktops");
    const QPoint inTheTerminal(100, 790);
    end();
    begin({.focusFollowsPointer = true});
    arrive();
    openTerminal();
    const auto rest = [&] {
        const int rests = tessaly().moments().count("panel-left-open");
        desktop().movePointer({900, 20}); // the panel opens there, and leaves the terminal free
        callUp();
        desktop().movePointer(inTheTerminal);
        expectFront("the terminal");
        expect("the panel to take note", [&] { return tessaly().moments().count("panel-left-open") > rests; });
    };
    rest();
    const auto signal = [&](int number) { ::kill(static_cast<pid_t>(tessaly().processID()), number); };
    signal(SIGSTOP); // hears late that the keyboard is back
    desktop().movePointer(row(0));
    expectPanel();
    type("alph");
    signal(SIGCONT);
    press("Return");
    expectNotice("Pasted “alpha”");
    expectFile(typedFile(), "alpha"); // a terminal pastes when it comes to it
    rest();
    click(row(1), 2);
    expectNotice("Pasted “gamma”");
    expectFile(typedFile(), "alphagamma");
    rest();
    press("super+shift+v"); // closes it, and is no word to the terminal
    expectNoPanel();
    rest();
    type("beside");
    expectNoPanel();
    rest();
    click(inTheTerminal);
    expectNoPanel();
    press("Return");
    expectFile(typedFile(), "alphagammabeside\n");
}

void PasteJourneyTest::keepsTheBytesOfAFilesName()
{
    const QByteArray uri = "file://" + session().homePath(u"caf"_s).toUtf8() + "%E9.txt"; // no text has that byte
    const QByteArray path = QByteArray::fromPercentEncoding(uri.mid(7));
    QVERIFY(std::ofstream(path.toStdString()) << "an old file");
    copy(uri, asFiles);
    expectNewest(uri);
    copyUnrecorded("between", u"image/x-none"_s);
    callUp();
    press("ctrl+c");
    expectNotice("Copied “caf\uFFFD.txt”");
    expectClipboard(uri + "\r\n", asFiles);
    QCOMPARE(std::remove(path.constData()), 0);
    press("Return");
    expectNotice("File no longer exists — removed from history");
}

void PasteJourneyTest::tellsThatAFileIsGone()
{
    const QString path = writeFile(u"passing.txt"_s, "here today");
    copyFile(path);
    QVERIFY(QFile::remove(path));
    openTerminal();
    callUp();
    press("Return");
    expectNotice("File no longer exists — removed from history");
    expectHistory({u"gamma"_s, u"beta"_s, u"alpha"_s});
    expectClipboard("file://" + path.toUtf8(), asFiles); // was not touched
}

void PasteJourneyTest::trayIconHasThePanelAndTheMenu()
{
    if (!isOnX11())
        QSKIP("there is no bar with a tray on the Wayland desktop");
    clickTrayIcon(1);
    expectPanel();
    // Below the icon and within the screen, by the margins that the placement keeps.
    const QRect panel = tessaly().panel()->geometry;
    QVERIFY(panel.right() <= 1280 - 8);
    QVERIFY(panel.top() >= tessaly().trayIcon()->geometry.center().y());
    clickTrayIcon(1);
    expectNoPanel();

    const auto menuIsOpen = [this] {
        const auto isMenu = [](const Window& window) { return window.isUnmanaged && window.geometry.height() > 100; };
        return std::ranges::any_of(tessaly().windows(), isMenu); // the icon has a tip as well
    };
    session().run(u"xdotool"_s, {u"keydown"_s, u"ctrl"_s});
    clickTrayIcon(1); // with Control as good as the other button
    expect("the menu", menuIsOpen);
    session().run(u"xdotool"_s, {u"keyup"_s, u"ctrl"_s});
    press("Escape");
    expect("the menu's end", [&] { return !menuIsOpen(); });
    clickTrayIcon(3);
    expect("the menu", menuIsOpen);
    press("ctrl+q");
    expect("its end", [this] { return !tessaly().isRunning(); });
    QCOMPARE(contents(), QStringList({u"gamma"_s, u"beta"_s, u"alpha"_s}));
}

QRect PasteJourneyTest::workOnOneOfTwoScreens()
{
    if (isOnSway()) {
        for (const char* words : {"output HEADLESS-1 position 0 0", "create_output",
                                  "output HEADLESS-2 resolution 1024x500 position 1280 0", "focus output HEADLESS-2"})
            session().run(u"swaymsg"_s, {QString::fromLatin1(words)});
        openTerminal();
        return {1280, 0, 1024, 500};
    }
    // The tray is on the right one, the terminal on the left one.
    session().run(u"xrandr"_s, u"--setmonitor left 640/170x800/210+0+0 screen"_s.split(u' '));
    session().run(u"xrandr"_s, u"--setmonitor right 640/170x800/210+640+0 none"_s.split(u' '));
    endTessaly();
    startTessaly();
    openTerminal();
    desktop().movePointer({1000, 400});
    return {0, 0, 640, 800};
}

void PasteJourneyTest::opensWhereTheUserWorks()
{
    if (isOnKwin())
        QSKIP("the desktop has one screen");
    const QRect screen = workOnOneOfTwoScreens();
    const auto expectPanelOn = [this](const QRect& wanted) {
        callUp();
        expect("the panel on that screen",
               [&] { return wanted.contains(tessaly().panel().value_or(Window()).geometry); });
    };
    expectPanelOn(screen);
    if (isOnSway()) {
        const auto moveOnTo = [this](const QString& output) {
            press("Escape");
            expectNoPanel();
            session().run(u"swaymsg"_s, {u"focus output "_s + output});
        };
        moveOnTo(u"HEADLESS-1"_s); // nothing is on it
        expectPanelOn({0, 0, 1280, 800});
        moveOnTo(u"HEADLESS-2"_s);
        expectPanelOn(screen);
    }
    press("Return");
    expectNotice("Pasted “gamma”");
    const auto isThere = [&] {
        const auto notice = tessaly().toast();
        return notice && screen.contains(notice->geometry);
    };
    expect("the notice on that screen", isThere);
}

QTEST_GUILESS_MAIN(PasteJourneyTest)
#include "PasteJourneyTest.moc"
