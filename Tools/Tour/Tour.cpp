// Plays Tessaly in a virtual session, with real programs as its neighbours, and leaves pictures of it.
#include "Journey.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

namespace {

class Tour final : public Journey
{
public:
    Tour(const QString& program, const QString& folder)
        : Journey(program)
        , m_folder(folder)
    {
        m_folder.mkpath(u"."_s);
    }

    /// False when it went no further somewhere.
    [[nodiscard]] bool play();

private:
    void prepare() override { listen(); }
    void fail(const QString& message, const Where& where) override;
    [[nodiscard]] bool hasFailed() const override { return m_hasFailed; }
    void say(const char* text) const;
    void copyAllKinds();
    void searchAndPaste();
    void showMenu();
    void keepHistory();
    /// As soon as nothing moves any more.
    void takePicture(const QString& name);

    QDir m_folder;
    bool m_hasFailed = false;
};

void Tour::fail(const QString& message, const Where& where)
{
    m_hasFailed = true;
    std::fprintf(stderr, "tour: it went no further: %s (line %d)\n", qPrintable(message), where.line());
}

void Tour::say(const char* text) const
{
    if (!m_hasFailed)
        std::printf("tour: %s\n", text);
    std::fflush(stdout);
}

void Tour::takePicture(const QString& name)
{
    expectStillness();
    if (!m_hasFailed && !session().screenshot(m_folder.filePath(name)))
        fail(u"%1 could not be taken"_s.arg(name), Where::current());
}

void Tour::copyAllKinds()
{
    say("an editor copies a text");
    const QString letter = openDocument(u"letter.txt"_s, "Dear reader, this was copied from an editor.");
    press("ctrl+a ctrl+c");
    expectCapture();

    say("xclip copies a picture, a link, a colour, a file and code");
    const QStringList drawing{u"-size"_s, u"640x400"_s, u"plasma:tomato-steelblue"_s, u"png:-"_s};
    copy(session().run(u"convert"_s, drawing).output, asPicture);
    copy("https://www.debian.org/releases/bookworm/?source=tour");
    copy("#8FA0FF");
    copyFile(letter);
    copy("int main()\n{\n    return 0;\n}\n");
}

void Tour::searchAndPaste()
{
    openTerminal();
    say("Super+Shift+V calls up the panel");
    callUp();
    takePicture(u"1-panel.png"_s);
    say("a few letters search, Return pastes into the terminal");
    type("debian");
    takePicture(u"2-search.png"_s);
    press("Return");
    expectNotice("Pasted “www.debian.org”");
    expectNoPanel();
    takePicture(u"3-pasted.png"_s);
}

void Tour::showMenu()
{
    say("a right click on the tray icon shows the menu");
    clickTrayIcon(3);
    expect("the menu", [this] { return tessaly().windows().size() > 1; });
    takePicture(u"4-menu.png"_s);
}

void Tour::keepHistory()
{
    endTessaly();
    const QString history = m_folder.filePath(u"history.json"_s);
    QFile::remove(history);
    if (!m_hasFailed && !QFile::copy(tessaly().historyFile(), history))
        fail(u"there is no history file"_s, Where::current());
}

bool Tour::play()
{
    begin({.trayHost = true, .compositor = true});
    if (!m_hasFailed) {
        copyAllKinds();
        searchAndPaste();
        showMenu();
        keepHistory();
    }
    end();
    return !m_hasFailed;
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
    if (!Tour(QFileInfo(arguments[1]).absoluteFilePath(), arguments[2]).play())
        return 1;
    std::printf("tour: pictures and the history file are in %s\n", qPrintable(arguments[2]));
    return 0;
}
