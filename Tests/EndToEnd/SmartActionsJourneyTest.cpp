#include "JourneyTest.h"
#include "LoopbackServer.h"
#include "Rows.h"

#include <QDir>
#include <QFile>
#include <QSet>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

/// Actions of every kind, run by keyboard; what they did is read by other programs. What each makes of its entry is
/// shown where it is made.
class SmartActionsJourneyTest final : public JourneyTest
{
    Q_OBJECT
public:
    SmartActionsJourneyTest()
        : JourneyTest({}, Sessions::one)
    {
    }

private slots:
    void copiesText();
    void copiesACode();
    void copiesAMarkdownLink();
    void opensWithOtherPrograms();
    void savesPicturesToTheDesktop();
    void readsTextInPictures();

private:
    void prepare() override;
    void arrive() override;
    void leave() override;
    void conclude() override;
    void copies(const char* name, const QByteArray& copied, const QString& target, const QByteArray& keys,
                const QByteArray& expected, const QString& notice);
    void copyOnce(const QByteArray& content, const QString& target = asText, Where where = Where::current());
    /// Runs an action of the newest entry: by its place in the list ("ctrl+2") or else by its name.
    void act(const QByteArray& keys, Where where = Where::current());
    [[nodiscard]] QString opened() { return session().homePath(u"opened"_s); }
    [[nodiscard]] QByteArray render(const QStringList& drawing);

    QSet<QByteArray> m_copied; // by other programs
};

void SmartActionsJourneyTest::prepare()
{
    listen();
    writeFile(u"Desktop/.keep"_s, {});
    const QString opener = writeFile(u"bin/xdg-open"_s, "#!/bin/sh\nprintf '%s\\n' \"$@\" >> \"$HOME/opened\"\n");
    QFile::setPermissions(opener, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    session().setEnvironment(u"PATH"_s, session().homePath(u"bin"_s) + u':' + session().environment().value(u"PATH"_s));
    session().setEnvironment(u"TZ"_s, u"UTC"_s);
}

void SmartActionsJourneyTest::arrive()
{
    QFile::remove(opened());
}

void SmartActionsJourneyTest::leave()
{
    press("Escape");
    expectNoPanel();
}

/// None of what the actions copied was recorded: once a later copy is, it would be there.
void SmartActionsJourneyTest::conclude()
{
    copyOnce("the end");
    expectNewest("the end");
    QCOMPARE(contents().size(), m_copied.size());
}

void SmartActionsJourneyTest::copyOnce(const QByteArray& content, const QString& target, Where where)
{
    copy(content, target, where);
    m_copied.insert(content);
}

void SmartActionsJourneyTest::act(const QByteArray& keys, Where where)
{
    if (!tessaly().panel())
        callUp(where);
    press("ctrl+k");
    if (keys.startsWith("ctrl+"))
        return press(keys);
    type(keys);
    press("Return");
}

QByteArray SmartActionsJourneyTest::render(const QStringList& drawing)
{
    return session().run(u"convert"_s, drawing + QStringList{u"png:-"_s}).output;
}

void SmartActionsJourneyTest::copies(const char* /*name*/, const QByteArray& copied, const QString& target,
                                     const QByteArray& keys, const QByteArray& expected, const QString& notice)
{
    copyOnce(copied, target);
    act(keys);
    expectNotice(notice);
    expectClipboard(expected);
    leave();
}

void SmartActionsJourneyTest::copiesText()
{
    checkRows(
        this, &SmartActionsJourneyTest::copies,
        {{"by its name", "ZsO8ciBkaWNo", asText, "base64", "f\xc3\xbcr dich", u"Decoded “für dich”"_s},
         {"the time zone", "1700000000", asText, "date", "2023-11-14T22:13:20Z", u"Copied 2023-11-14T22:13:20Z"_s},
         {"of a file", "file:///tmp/it's%20mine.txt", asFiles, "shell", R"('/tmp/it'\''s mine.txt')",
          u"Copied shell-safe path"_s}});
}

void SmartActionsJourneyTest::copiesACode()
{
    const QByteArray text = "na\xc3\xafve \xe6\xbc\xa2\xe5\xad\x97";
    copyOnce(text);
    act("qr");
    expectNotice("Generating QR …");
    expect("a code on the clipboard", [this] { return !pasted(asPicture).isEmpty(); });
    const QStringList options{u"--quiet"_s, u"--raw"_s, u"--oneshot"_s, u"-Sbinary"_s, u"-"_s};
    QCOMPARE(session().run(u"zbarimg"_s, options, pasted(asPicture)).output, text);
}

void SmartActionsJourneyTest::copiesAMarkdownLink()
{
    LoopbackServer web;
    web.answer("/page", {"<html><head><title>Caf\xc3\xa9 &amp; [more]</title></head></html>"});
    web.hang("/silence");
    for (const QByteArray path : {"/page", "/silence"}) {
        const QByteArray link = web.url(path).toEncoded();
        copyOnce(link);
        act("markdown");
        expectNotice("Copied Markdown link");
        expectClipboard((path == "/page" ? "[Caf\xc3\xa9 & [more]](" : "[127.0.0.1](") + link + ')');
        leave();
    }
}

void SmartActionsJourneyTest::opensWithOtherPrograms()
{
    const QByteArray link = "https://example.org/a?b=c&d";
    copyOnce(link);
    act("open");
    expectNotice("Opening example.org …");
    expectFile(opened(), link + '\n');
    QCOMPARE(pasted(), link); // not ours
    leave();

    copyOnce("file:///tmp/a%20folder/file.txt", asFiles);
    act("show in");
    expectNotice("Showing in Files …");
    expectFile(opened(), link + "\nfile:///tmp/a%20folder/\n");
}

void SmartActionsJourneyTest::savesPicturesToTheDesktop()
{
    const QByteArray drawn = render({u"-size"_s, u"30x20"_s, u"xc:#336699"_s});
    copyOnce(drawn, asPicture);
    expect("the picture as the newest entry", [this] { return newest().type == u"image"_s; });
    const QString name = newest().content.section(u'/', -1);
    QFile stored(newest().content);
    QVERIFY(stored.open(QFile::ReadOnly));
    const QByteArray content = stored.readAll();
    act("ctrl+2");
    expectFile(session().homePath(u"Desktop/"_s + name), content);
    act("ctrl+2");
    expectFile(session().homePath(u"Desktop/"_s + name.chopped(4) + u" 2.png"_s), content);
    act("filename");
    expectClipboard(name.toUtf8());
}

void SmartActionsJourneyTest::readsTextInPictures()
{
    copyOnce(render(u"-background|white|-bordercolor|white|-border|40|-font|DejaVu-Sans|-pointsize|40|"
                    "label:Dear reader\\nsecond line"_s.split(u'|')),
             asPicture);
    act("ocr");
    expectNotice("Copied 23 chars of text");
    expectClipboard("Dear reader\nsecond line");
}

QTEST_GUILESS_MAIN(SmartActionsJourneyTest)
#include "SmartActionsJourneyTest.moc"
