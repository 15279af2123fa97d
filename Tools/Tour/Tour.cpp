// Plays Tessaly in a virtual session, with real programs as its neighbours, and leaves pictures of it.
#include "RunningTessaly.h"
#include "VirtualSession.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

namespace {

constexpr unsigned long animations = 300; // ms; longer than any of them

class Tour final
{
public:
    Tour(const QString& program, const QString& folder);
    [[nodiscard]] bool play();

private:
    void say(const char* text) const;
    [[nodiscard]] bool copy(const QByteArray& content, const QString& target = u"UTF8_STRING"_s);
    [[nodiscard]] bool copiesOfAllKinds();
    [[nodiscard]] bool searchAndPaste();
    [[nodiscard]] bool menu();
    [[nodiscard]] bool waitForFront(const QByteArray& title);
    [[nodiscard]] bool picture(const QString& name);

    QDir m_folder;
    VirtualSession m_session{{.size = {1280, 800}, .trayHost = true, .compositor = true}};
    RunningTessaly m_tessaly;
};

Tour::Tour(const QString& program, const QString& folder)
    : m_folder(folder)
    , m_tessaly(m_session, program)
{
    m_folder.mkpath(u"."_s);
}

void Tour::say(const char* text) const
{
    std::printf("tour: %s\n", text);
    std::fflush(stdout);
}

bool Tour::picture(const QString& name)
{
    QThread::msleep(animations);
    return m_session.screenshot(m_folder.filePath(name));
}

bool Tour::waitForFront(const QByteArray& title)
{
    return VirtualSession::waitUntil([&] {
        return m_session.run(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s}).output.contains(title);
    });
}

bool Tour::copy(const QByteArray& content, const QString& target)
{
    m_session.run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, target, u"-i"_s}, content);
    return m_tessaly.waitForCaptures(1);
}

bool Tour::copiesOfAllKinds()
{
    say("an editor copies a text");
    const QString letter = m_session.homePath(u"letter.txt"_s);
    QFile file(letter);
    if (!file.open(QFile::WriteOnly)) {
        return false;
    }
    file.write("Dear reader, this was copied from an editor.");
    file.close();
    m_session.start(u"mousepad"_s, {u"--disable-server"_s, letter});
    if (!waitForFront("letter.txt")) {
        return false;
    }
    m_tessaly.press(u"ctrl+a"_s);
    m_tessaly.press(u"ctrl+c"_s);
    if (!m_tessaly.waitForCaptures(1)) {
        return false;
    }

    say("xclip copies a link, a colour, code, a file and a picture");
    const QString photo = m_session.homePath(u"photo.png"_s);
    m_session.run(u"convert"_s, {u"-size"_s, u"640x400"_s, u"plasma:tomato-steelblue"_s, photo});
    QFile bytes(photo);
    if (!bytes.open(QFile::ReadOnly)) {
        return false;
    }
    return copy(bytes.readAll(), u"image/png"_s) && copy("https://www.debian.org/releases/bookworm/?source=tour") &&
           copy("#8FA0FF") && copy("file://" + letter.toUtf8(), u"text/uri-list"_s) &&
           copy("int main()\n{\n    return 0;\n}\n");
}

bool Tour::searchAndPaste()
{
    m_session.start(u"xterm"_s, {u"-T"_s, u"terminal"_s, u"-geometry"_s, u"90x14+60-60"_s});
    if (!waitForFront("terminal")) {
        return false;
    }
    say("Super+Shift+V calls up the panel");
    m_tessaly.press(u"super+shift+v"_s);
    if (!m_tessaly.waitForPanel(true) || !picture(u"1-panel.png"_s)) {
        return false;
    }
    say("a few letters search, Return pastes into the terminal");
    m_tessaly.moments().clear();
    m_tessaly.type(u"debian"_s);
    if (!m_tessaly.moments().next("list-painted", VirtualSession::defaultTimeout) || !picture(u"2-search.png"_s)) {
        return false;
    }
    m_tessaly.press(u"Return"_s);
    return VirtualSession::waitUntil([&] { return m_tessaly.toast().has_value(); }) && m_tessaly.waitForPanel(false) &&
           picture(u"3-pasted.png"_s);
}

bool Tour::menu()
{
    say("a right click on the tray icon shows the menu");
    if (!VirtualSession::waitUntil([&] { return m_tessaly.trayIcon().has_value(); })) {
        return false;
    }
    const qsizetype before = m_tessaly.windows().size();
    m_tessaly.click(m_tessaly.trayIcon()->geometry.center(), 1, 3);
    return VirtualSession::waitUntil([&] { return m_tessaly.windows().size() > before; }) && picture(u"4-menu.png"_s);
}

bool Tour::play()
{
    if (!m_session.failure().isEmpty()) {
        say(qPrintable(m_session.failure()));
        return false;
    }
    if (!m_tessaly.start() || !copiesOfAllKinds() || !searchAndPaste() || !menu()) {
        return false;
    }
    m_tessaly.stop(SIGTERM);
    const QString history = m_folder.filePath(u"history.json"_s);
    QFile::remove(history);
    return QFile::copy(m_tessaly.historyFile(), history);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: tessaly-tour <program> <folder for the pictures>\n", stderr);
        return 2;
    }
    if (!Tour(QFileInfo(arguments[1]).absoluteFilePath(), arguments[2]).play()) {
        std::fputs("tour: it went no further\n", stderr);
        return 1;
    }
    std::printf("tour: pictures and the history file are in %s\n", qPrintable(arguments[2]));
    return 0;
}
