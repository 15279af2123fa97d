#include "DesktopEntries.h"
#include "Rows.h"
#include "WindowIcon.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

/// How a window becomes an application with a name and an icon.
class DesktopEntriesTest final : public QObject
{
    Q_OBJECT
private slots:
    void parse();
    void findsTheApplication();
    void windowIcons();
};

void DesktopEntriesTest::parse()
{
    // Name, icon, window class, executable; empty list: no application.
    const auto check = [](const char* /*name*/, const QByteArray& lines, const QStringList& fields) {
        const auto entry = DesktopEntries::parse(u"id"_s, "[Desktop Entry]\nType=Application\n" + lines, u"de_AT"_s);
        const QStringList parsed =
            entry ? QStringList{entry->name, entry->icon, entry->windowClass, entry->executable} : QStringList();
        QCOMPARE(parsed, fields);
    };
    checkRows(
        +check,
        {{"plain",
          "Name=Files\nIcon=files\nStartupWMClass=Nautilus\nExec=nautilus %U\n",
          {u"Files"_s, u"files"_s, u"Nautilus"_s, u"nautilus"_s}},
         {"translated", "Name=Files\nName[de]=Dateien\nName[de_AT]=Datein\n", {u"Datein"_s, {}, {}, {}}},
         {"translated for the language", "Name[de]=Dateien\nName=Files\n", {u"Dateien"_s, {}, {}, {}}},
         {"not translated", "Name[fr]=Fichiers\nName=Files\n", {u"Files"_s, {}, {}, {}}},
         {"blanks and escapes", "Name = A\\sB\\\\C\r\nIcon =files\r\n", {u"A B\\C"_s, u"files"_s, {}, {}}},
         {"program with a folder, quoted", "Name=A\nExec=\"/opt/My App/bin\" --new\n", {u"A"_s, {}, {}, u"bin"_s}},
         {"actions are another group", "Name=A\n[Desktop Action new]\nName=New\nExec=other\n", {u"A"_s, {}, {}, {}}},
         {"deleted", "Name=A\nHidden=true\n", {}},
         {"a link", "Name=A\nType=Link\n", {}}});
    QVERIFY(!DesktopEntries::parse(u"id"_s, "\xff\xfe\0=["_ba, u"de_AT"_s));
}

namespace {

void writeEntry(const QString& folder, const QString& file, const QByteArray& lines)
{
    const QString path = folder + u'/' + file;
    QDir().mkpath(QFileInfo(path).path());
    QFile entry(path);
    QVERIFY(entry.open(QIODevice::WriteOnly));
    entry.write("[Desktop Entry]\nType=Application\n" + lines);
}

} // namespace

void DesktopEntriesTest::findsTheApplication()
{
    const QTemporaryDir folder;
    const QTemporaryDir system;
    writeEntry(folder.path(), u"a-painter-import.desktop"_s, "Name=Import\nStartupWMClass=Painter\nNoDisplay=true\n");
    writeEntry(folder.path(), u"calculator.desktop"_s, "Name=Calculator\nExec=/usr/bin/calc\n");
    writeEntry(folder.path(), u"kde/player.desktop"_s, "Name=Player\n");
    writeEntry(folder.path(), u"org.gnome.Editor.desktop"_s, "Name=Editor\n");
    writeEntry(folder.path(), u"painter.desktop"_s, "Name=Painter\nStartupWMClass=Painter\n");
    writeEntry(folder.path(), u"web.desktop"_s, "Name=Web\nStartupWMClass=Browser\n");
    writeEntry(folder.path(), u"xterm.desktop"_s, "Name=XTerm\n");
    writeEntry(system.path(), u"gone.desktop"_s, "Name=Theirs\n");
    writeEntry(folder.path(), u"gone.desktop"_s, "Name=Gone\nHidden=true\n");
    const DesktopEntries entries({folder.path(), system.path(), u"/does/not/exist"_s}, u"en_US"_s);
    const std::pair<DesktopEntries::Traits, QString> windows[] = {
        {{u"org.gnome.Editor"_s, u"Browser"_s, {}, {}}, u"org.gnome.Editor"_s}, // the id before what is claimed,
        {{{}, u"browser"_s, u"Navigator"_s, {}}, u"web"_s},                     // which is that of the class
        {{{}, u"Unknown"_s, u"Browser"_s, {}}, u"web"_s},                       // or of the instance
        {{{}, u"XTerm"_s, u"login"_s, {}}, u"xterm"_s},
        {{{}, u"Editor"_s, {}, {}}, u"org.gnome.Editor"_s}, // the end of an id
        {{u"kde-player"_s, {}, {}, {}}, u"kde-player"_s},   // of a subfolder
        {{{}, u"Main"_s, {}, u"calc"_s}, u"calculator"_s},
        {{{}, u"Painter"_s, {}, {}}, u"painter"_s}, // shown before hidden
        {{u"gone"_s, {}, {}, {}}, {}},              // deleted by the user
        {{u"a"_s, u"b"_s, u"c"_s, u"d"_s}, {}},
    };
    for (const auto& [traits, id] : windows) {
        const auto* found = entries.find(traits);
        QCOMPARE(found == nullptr ? QString() : found->id, id);
    }
}

void DesktopEntriesTest::windowIcons()
{
    using Words = std::vector<uint32_t>;
    const auto picture = [](uint32_t side) {
        Words words(2 + size_t(side) * side, 0xff336699);
        words[0] = words[1] = side;
        return words;
    };
    const auto joined = [](Words left, const Words& right) {
        left.insert(left.end(), right.begin(), right.end());
        return left;
    };
    const auto check = [](const char* /*name*/, const Words& property, QSize size) {
        const QImage image = X11::windowIcon(property, 32);
        QCOMPARE(image.isNull() ? QSize() : image.size(), size);
        if (!image.isNull())
            QCOMPARE(image.pixelColor(image.width() - 1, image.height() - 1), QColor(0x33, 0x66, 0x99));
    };
    checkRows(+check,
              {{"smallest that is large enough", joined(joined(picture(16), picture(128)), picture(48)), {48, 48}},
               {"largest when all are small", joined(picture(8), picture(24)), {24, 24}},
               {"much larger ones are scaled", picture(200), {32, 32}},
               {"empty", {}, {}},
               {"no room for the pixels", {16, 16, 1, 2, 3}, {}},
               {"sizes that overflow", {0x10000, 0x10000, 1, 2, 3}, {}},
               {"size of nothing", {0, 4, 1, 2, 3}, {}},
               {"second one cut off", joined(picture(8), {64, 64, 1}), {8, 8}}});
}

QTEST_GUILESS_MAIN(DesktopEntriesTest)
#include "DesktopEntriesTest.moc"
