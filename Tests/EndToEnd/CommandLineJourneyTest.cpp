#include "EncodedPicture.h"
#include "JourneyTest.h"
#include "Rows.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

/// The commands of the terminal against the running program.
class CommandLineJourneyTest final : public JourneyTest
{
    Q_OBJECT

private slots:
    void answersCommands();
    void carriesWhatDoesNotFitIntoAMessage();
    void opensAndClosesThePanel();
    void pastesIntoTheWindowInFront();
    void pausesAndTellsWhatItSkipped();
    void tellsOfChanges();
    void opensTheEditor();
    void keepsPreferences();
    void bindsAKeyOfGnome();
    void tellsWhyNobodyAnswers();

private:
    /// What the status says in JSON has that in it.
    void expectStatus(const char* part);
    void answers(const char* name, const QStringList& arguments, const QByteArray& input, int exitCode,
                 const QString& output, const QByteArray& errors);
};

void CommandLineJourneyTest::answers(const char* /*name*/, const QStringList& arguments, const QByteArray& input,
                                     int exitCode, const QString& output, const QByteArray& errors)
{
    const VirtualSession::Result result = session().run(tessaly().program(), arguments, input);
    static const QRegularExpression id(u"[0-9a-f]{8}(-[0-9a-f-]{27})?"_s);
    static const QRegularExpression time(u"\\d{4}-\\d{2}-[\\dT:.]{15}Z"_s);
    QCOMPARE(QString::fromUtf8(result.output).replace(id, u"ID"_s).replace(time, u"TIME"_s), output);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY2(errors.isEmpty() ? result.errors.isEmpty() : result.errors.contains(errors), result.errors.constData());
}

void CommandLineJourneyTest::answersCommands()
{
    copy("Crème brûlée");
    copy("https://example.org");
    const QString link = u"1\tID\tlink\t-\thttps://example.org\n"_s;
    const QString dessert = u"2\tID\ttext\t-\tCrème brûlée\n"_s;
    checkRows(
        this, &CommandLineJourneyTest::answers,
        {{"all", {u"list"_s}, "", 0, link + dessert, ""},
         {"of a type", {u"list"_s, u"--type=text"_s}, "", 0, dessert, ""},
         {"that hold a text", {u"list"_s, u"--search"_s, u"BRULEE"_s}, "", 0, dessert, ""},
         {"so many", {u"list"_s, u"-n"_s, u"1"_s}, "", 0, link, ""},
         {"by its place", {u"get"_s, u"2"_s}, "", 0, u"Crème brûlée"_s, ""},
         {"not in that form", {u"get"_s, u"1"_s, u"--type"_s, u"image/png"_s}, "", 1, {}, "as text/plain only"},
         {"out of a list", {u"copy"_s, u"-"_s}, "2 Crème\n", 0, {}, ""},
         {"out of nothing", {u"copy"_s, u"-"_s}, "", 1, {}, "names no entry"},
         {"from a pipe",
          {u"add"_s},
          "\033[31mred\xC2\x9B"
          "2J\n",
          0,
          u"ID\n"_s,
          ""},
         {"harmless", {u"list"_s, u"-n"_s, u"1"_s}, "", 0, u"1\tID\ttext\t-\t\uFFFD[31mred\uFFFD2J\n"_s, ""},
         {"as it came", {u"get"_s, u"1"_s}, "", 0, u"\033[31mred\u009B2J\n"_s, ""},
         {"no picture", {u"add"_s, u"--type"_s, u"image/png"_s}, "none", 1, {}, "nothing in it"},
         {"what is possible", {u"actions"_s, u"2"_s}, "", 0, u"Clean whitespace\nSlugify\nQR code\n"_s, ""},
         {"done", {u"run"_s, u"2"_s, u"slugify"_s}, "", 0, {}, ""},
         {"impossible", {u"run"_s, u"2"_s, u"fly"_s}, "", 1, {}, "no action 'fly'"},
         {"kept", {u"pin"_s, u"3"_s}, "", 0, {}, ""},
         {"pinned ones", {u"list"_s, u"--pinned"_s}, "", 0, u"1\tID\tlink\t*\thttps://example.org\n"_s, ""},
         {"one less", {u"delete"_s, u"2"_s}, "", 0, {}, ""},
         {"all others", {u"clear"_s}, "", 0, {}, ""},
         {"what stays", {u"get"_s, u"1"_s}, "", 0, u"https://example.org"_s, ""},
         {"not there", {u"get"_s, u"2"_s}, "", 1, {}, "no entry '2'"},
         {"several files", {u"add"_s, u"--type"_s, u"text/uri-list"_s}, "file:///a\r\nfile:///b\r\n", 0, u"ID\n"_s, ""},
         {"as objects",
          {u"list"_s, u"--json"_s, u"--type=file"_s},
          "",
          0,
          QStringLiteral(R"([{"bundleID":null,"copiedAt":"TIME","furtherFiles":1,"id":"ID","index":2,)"
                         R"("pinned":false,"preview":"/a","size":2,"sourceApp":null,"type":"file"}])") +
              u'\n',
          ""},
         {"too little", {u"get"_s}, "", 2, {}, "needs ENTRY"},
         {"too much", {u"toggle"_s, u"all"_s}, "", 2, {}, "no use for 'all'"},
         {"no type", {u"list"_s, u"--type"_s, u"x"_s}, "", 2, {}, "no type 'x'"},
         {"unknown", {u"frobnicate"_s}, "", 2, {}, "unknown command 'frobnicate'"}});
    expectClipboard("creme-brulee");
}

void CommandLineJourneyTest::carriesWhatDoesNotFitIntoAMessage()
{
    const QByteArray large(3'000'000, 'x');
    QCOMPARE(session().run(tessaly().program(), {u"add"_s}, large).exitCode, 0);
    QCOMPARE(session().run(tessaly().program(), {u"get"_s, u"1"_s}).output, large);
    expectNewest(QString::fromLatin1(large));
}

void CommandLineJourneyTest::opensAndClosesThePanel()
{
    for (const auto& [command, opens] :
         {std::pair(u"show"_s, true), {u"toggle"_s, false}, {u"toggle"_s, true}, {u"hide"_s, false}}) {
        answers("", {command}, "", 0, {}, "");
        opens ? expectPanel() : expectNoPanel();
    }
}

void CommandLineJourneyTest::pastesIntoTheWindowInFront()
{
    copy("typed by a script\n");
    openTerminal();
    answers("", {u"paste"_s, u"1"_s}, "", 0, {}, "");
    expectFile(typedFile(), "typed by a script\n");
}

void CommandLineJourneyTest::expectStatus(const char* part)
{
    expect(QLatin1StringView(part), [&] {
        return session().run(tessaly().program(), {u"status"_s, u"--json"_s}).output.contains(part);
    });
}

void CommandLineJourneyTest::pausesAndTellsWhatItSkipped()
{
    copy("before");
    const auto choose = [this](const QString& action) { // as the desktop's menus do
        QDBusMessage call = QDBusMessage::createMethodCall(u"com.tessaly.Tessaly"_s, u"/com/tessaly/Tessaly"_s,
                                                           u"org.freedesktop.Application"_s, u"ActivateAction"_s);
        call << action << QVariantList() << QVariantMap();
        const QString address = session().environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s);
        return QDBusConnection::connectToBus(address, address).call(call).type() == QDBusMessage::ReplyMessage;
    };
    answers("", {u"hide"_s}, "", 0, {}, ""); // waits until it can be reached
    QVERIFY(!choose(u"dance"_s));
    QVERIFY(choose(u"pause"_s));
    copyUnrecorded("meanwhile");
    expectStatus(R"("skipped":{"paused":1})");
    expectStatus(R"("paused":true,"pinned":0)");
    expectStatus(R"("advice":"","name":"clipboard","reason":"","works":true)");
    expectStatus(R"("reason":"There is no tray in this session.","works":false)");
    expectStatus(isOnX11() ? R"("holder":"x11","name":"hot-key")" : R"("name":"hot-key")");
    expectStatus(R"("name":"worker")");
    answers("", {u"pause"_s, u"1s"_s}, "", 0, {}, "");
    expectStatus(R"("paused":false)");
    copy("afterwards");
    copyUnrecorded("secret", u"x-kde-passwordManagerHint"_s);
    expectStatus(R"("skipped":{"paused":1,"secret":1})");
    expectHistory({u"afterwards"_s, u"before"_s});
    checkRows(this, &CommandLineJourneyTest::answers,
              {{"no unit", {u"pause"_s, u"5"_s}, "", 2, {}, "'5' is no duration"},
               {"too long", {u"pause"_s, u"8d"_s}, "", 2, {}, "'8d' is no duration"},
               {"beyond numbers", {u"pause"_s, u"99999999999m"_s}, "", 2, {}, "is no duration"},
               {"together", {u"pause"_s, u"1h30m"_s}, "", 0, {}, ""}});
    expectStatus(R"("paused":true)");
}

void CommandLineJourneyTest::tellsOfChanges()
{
    QProcess& watch = session().start(tessaly().program(), {u"watch"_s});
    const auto expectLine = [&](const char* part) {
        expect(QLatin1StringView(part), [&] { return watch.canReadLine(); });
        const QByteArray line = watch.readLine();
        QVERIFY2(line.startsWith('{') && line.endsWith("}\n") && line.contains(part), line.constData());
    };
    expectLine(R"("event":"watching")");
    copy("new");
    expectLine(R"("preview":"new")");
    answers("", {u"pin"_s, u"1"_s}, "", 0, {}, "");
    expectLine(R"("event":"changed")");
    answers("", {u"delete"_s, u"1"_s}, "", 0, {}, "");
    expectLine(R"("event":"removed")");
    answers("", {u"pause"_s}, "", 0, {}, "");
    expectLine(R"("event":"paused")");
    answers("", {u"quit"_s}, "", 0, {}, "");
    expect(u"the end of both", [&] { return watch.state() == QProcess::NotRunning && !tessaly().isRunning(); });
    QCOMPARE(watch.exitCode(), 4);
}

void CommandLineJourneyTest::opensTheEditor()
{
    answers("", {u"annotate"_s, writeFile(u"red.png"_s, encoded(filled({300, 200}, Qt::red)))}, "", 0, {}, "");
    expect(u"the editor", [this] { return tessaly().editor().has_value(); });
}

void CommandLineJourneyTest::bindsAKeyOfGnome()
{
    const QString schema = u"org.gnome.settings-daemon.plugins.media-keys"_s;
    const QString ours = u"/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/tessaly/"_s;
    const auto setting = [&](const QString& of, const QString& key) {
        return session().run(u"gsettings"_s, {u"get"_s, of, key}).output.trimmed();
    };
    answers("elsewhere", {u"bind"_s, u"--yes"_s}, "", 1, {}, "only GNOME's keys");
    session().setEnvironment(u"XDG_CURRENT_DESKTOP"_s, u"ubuntu:GNOME"_s);
    session().setEnvironment(u"GSETTINGS_BACKEND"_s, u"keyfile"_s);
    session().run(u"gsettings"_s, {u"set"_s, schema, u"custom-keybindings"_s, u"['/another/']"_s});
    checkRows(this, &CommandLineJourneyTest::answers,
              {{"nobody to ask", {u"bind"_s}, "y\n", 2, {}, "--yes agrees"},
               {"agreed", {u"bind"_s, u"--yes"_s}, "", 0, {}, ""},
               {"twice", {u"bind"_s, u"--yes"_s}, "", 1, {}, "set already"}});
    QCOMPARE(setting(schema, u"custom-keybindings"_s), "['/another/', '" + ours.toLatin1() + "']");
    QCOMPARE(setting(schema + u".custom-keybinding:"_s + ours, u"binding"_s), "'<Super><Shift>v'");
    QVERIFY(setting(schema + u".custom-keybinding:"_s + ours, u"command"_s).endsWith(" toggle'"));
}

void CommandLineJourneyTest::keepsPreferences()
{
    checkRows(this, &CommandLineJourneyTest::answers,
              {{"chosen", {u"config"_s, u"set"_s, u"editorSize"_s, u"large"_s}, "", 0, {}, ""},
               {"kept", {u"config"_s, u"get"_s, u"editorSize"_s}, "", 0, u"large\n"_s, ""},
               {"impossible", {u"config"_s, u"set"_s, u"editorColor"_s, u"pink"_s}, "", 2, {}, "can be red, yellow"},
               {"unknown", {u"config"_s, u"get"_s, u"x"_s}, "", 2, {}, "no preference 'x'"},
               {"unfinished", {u"config"_s, u"set"_s, u"editorSize"_s}, "", 2, {}, "can be small"},
               {"no pattern", {u"config"_s, u"set"_s, u"neverPatterns"_s, u"("_s}, "", 2, {}, "no regular expression"},
               {"patterns", {u"config"_s, u"set"_s, u"neverPatterns"_s, u"^pin:"_s, u"x y"_s}, "", 0, {}, ""},
               {"a list", {u"config"_s, u"get"_s, u"neverPatterns"_s}, "", 0, u"^pin:\nx y\n"_s, ""},
               {"types", {u"config"_s, u"set"_s, u"recordedTypes"_s, u"link"_s, u"text"_s}, "", 0, {}, ""},
               {"few", {u"config"_s, u"set"_s, u"historyEntries"_s, u"9"_s}, "", 2, {}, "can be 10 to"},
               {"at the end", {u"config"_s, u"set"_s, u"forgetOnExit"_s, u"true"_s}, "", 0, {}, ""}});
    // The running program follows; its new key is the last that it hears of.
    tessaly().moments().clear();
    answers("", {u"config"_s, u"set"_s, u"hotKey"_s, u"alt+ctrl+j"_s}, "", 0, {}, "");
    expect(u"the other key", [this] { return tessaly().moments().next("hot-key-grabbed", 0).has_value(); });
    // One at a time: what is replaced before it was read was nobody's to skip.
    for (const auto& [text, skipped] : {std::pair("#ff8800", R"("skipped":{"type":1})"),
                                        std::pair("pin: 1234", R"("skipped":{"pattern":1,"type":1})")}) {
        copyUnrecorded(text);
        expectStatus(skipped);
    }
    copy("kept");
    answers("", {u"pin"_s, u"1"_s}, "", 0, {}, "");
    copy("forgotten");
    endTessaly();
    expectHistory({u"kept"_s});
}

void CommandLineJourneyTest::tellsWhyNobodyAnswers()
{
    answers("", {u"list"_s}, "", 0, {}, ""); // at once, although it has just begun
    ::kill(static_cast<pid_t>(tessaly().processID()), SIGSTOP);
    answers("", {u"list"_s}, "", 3, {}, "does not answer");
    ::kill(static_cast<pid_t>(tessaly().processID()), SIGCONT);
    answers("", {u"list"_s}, "", 0, {}, "");
    endTessaly();
    answers("", {u"list"_s}, "", 4, {}, "not running");
}

QTEST_GUILESS_MAIN(CommandLineJourneyTest)
#include "CommandLineJourneyTest.moc"
