#include "DesktopEntries.h"
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
    void parse_data();
    void parse();
    void findsTheApplication_data();
    void findsTheApplication();
    void windowIcons_data();
    void windowIcons();
};

void DesktopEntriesTest::parse_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("fields"); // name, icon, window class, executable; empty list: no application

    const auto row = [](const char* name, const QByteArray& lines, const QStringList& fields) {
        QTest::newRow(name) << "[Desktop Entry]\nType=Application\n" + lines << fields;
    };
    row("plain", "Name=Files\nIcon=files\nStartupWMClass=Nautilus\nExec=nautilus %U\n",
        {u"Files"_s, u"files"_s, u"Nautilus"_s, u"nautilus"_s});
    row("translated", "Name=Files\nName[de]=Dateien\nName[de_AT]=Datein\n", {u"Datein"_s, {}, {}, {}});
    row("translated for the language", "Name[de]=Dateien\nName=Files\n", {u"Dateien"_s, {}, {}, {}});
    row("not translated", "Name[fr]=Fichiers\nName=Files\n", {u"Files"_s, {}, {}, {}});
    row("blanks around the equals sign", "Name = Files\r\nIcon =files\r\n", {u"Files"_s, u"files"_s, {}, {}});
    row("escapes", "Name=A\\sB\\\\C\n", {u"A B\\C"_s, {}, {}, {}});
    row("program with a folder, quoted", "Name=A\nExec=\"/opt/My App/bin\" --new\n", {u"A"_s, {}, {}, u"bin"_s});
    row("actions are another group", "Name=A\n[Desktop Action new]\nName=New\nExec=other\n", {u"A"_s, {}, {}, {}});
    row("deleted", "Name=A\nHidden=true\n", {});
    QTest::newRow("a link") << QByteArray("[Desktop Entry]\nType=Link\nName=A\n") << QStringList();
    QTest::newRow("no entry at all") << QByteArray("\xff\xfe\x00=[", 5) << QStringList();
}

void DesktopEntriesTest::parse()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QStringList, fields);
    const auto entry = DesktopEntries::parse(u"id"_s, text, u"de_AT"_s);
    QCOMPARE(entry.has_value(), !fields.isEmpty());
    if (entry) {
        const QStringList parsed{entry->name, entry->icon, entry->windowClass, entry->executable};
        QCOMPARE(parsed, fields);
    }
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

void DesktopEntriesTest::findsTheApplication_data()
{
    QTest::addColumn<DesktopEntries::Traits>("traits");
    QTest::addColumn<QString>("id");

    const auto row = [](const char* name, const DesktopEntries::Traits& traits, const QString& id) {
        QTest::newRow(name) << traits << id;
    };
    row("application id", {u"org.gnome.Editor"_s, u"Browser"_s, {}, {}}, u"org.gnome.Editor"_s);
    row("claimed class", {{}, u"Browser"_s, u"Navigator"_s, {}}, u"web"_s);
    row("claimed class, another case", {{}, u"browser"_s, {}, {}}, u"web"_s);
    row("claimed instance", {{}, u"Unknown"_s, u"Browser"_s, {}}, u"web"_s);
    row("class is the id", {{}, u"XTerm"_s, u"login"_s, {}}, u"xterm"_s);
    row("class is the end of the id", {{}, u"Editor"_s, {}, {}}, u"org.gnome.Editor"_s);
    row("id of a subfolder", {u"kde-player"_s, {}, {}, {}}, u"kde-player"_s);
    row("executable", {{}, u"Main"_s, {}, u"calc"_s}, u"calculator"_s);
    row("shown before hidden", {{}, u"Painter"_s, {}, {}}, u"painter"_s);
    row("deleted by the user", {u"gone"_s, {}, {}, {}}, {});
    row("changed by the user", {{}, {}, u"Mine"_s, {}}, u"changed"_s);
    row("unknown", {u"a"_s, u"b"_s, u"c"_s, u"d"_s}, {});
}

void DesktopEntriesTest::findsTheApplication()
{
    QFETCH(const DesktopEntries::Traits, traits);
    QFETCH(const QString, id);
    const QTemporaryDir folder;
    writeEntry(folder.path(), u"a-painter-import.desktop"_s, "Name=Import\nStartupWMClass=Painter\nNoDisplay=true\n");
    writeEntry(folder.path(), u"calculator.desktop"_s, "Name=Calculator\nExec=/usr/bin/calc\n");
    writeEntry(folder.path(), u"kde/player.desktop"_s, "Name=Player\n");
    writeEntry(folder.path(), u"org.gnome.Editor.desktop"_s, "Name=Editor\n");
    writeEntry(folder.path(), u"painter.desktop"_s, "Name=Painter\nStartupWMClass=Painter\n");
    writeEntry(folder.path(), u"web.desktop"_s, "Name=Web\nStartupWMClass=Browser\n");
    writeEntry(folder.path(), u"xterm.desktop"_s, "Name=XTerm\n");
    const QTemporaryDir system;
    for (const QString& file : {u"gone.desktop"_s, u"changed.desktop"_s})
        writeEntry(system.path(), file, "Name=Theirs\n");
    writeEntry(folder.path(), u"gone.desktop"_s, "Name=Gone\nHidden=true\n");
    writeEntry(folder.path(), u"changed.desktop"_s, "Name=Changed\nStartupWMClass=Mine\n");
    const DesktopEntries entries({folder.path(), system.path(), u"/does/not/exist"_s}, u"en_US"_s);
    const auto* found = entries.find(traits);
    QCOMPARE(found == nullptr ? QString() : found->id, id);
}

void DesktopEntriesTest::windowIcons_data()
{
    using Words = std::vector<uint32_t>;
    QTest::addColumn<Words>("property");
    QTest::addColumn<QSize>("size");

    const auto picture = [](uint32_t side) {
        Words words(2 + size_t(side) * side, 0xff336699);
        words[0] = words[1] = side;
        return words;
    };
    const auto joined = [](Words left, const Words& right) {
        left.insert(left.end(), right.begin(), right.end());
        return left;
    };
    const auto row = [](const char* name, const Words& property, QSize size) {
        QTest::newRow(name) << property << size;
    };
    row("smallest that is large enough", joined(joined(picture(16), picture(128)), picture(48)), {48, 48});
    row("largest when all are small", joined(picture(8), picture(24)), {24, 24});
    row("much larger ones are scaled", picture(200), {32, 32});
    row("empty", {}, QSize());
    row("no room for the pixels", {16, 16, 1, 2, 3}, {});
    row("sizes that overflow", {0x10000, 0x10000, 1, 2, 3}, {});
    row("size of nothing", {0, 4, 1, 2, 3}, {});
    row("second one cut off", joined(picture(8), {64, 64, 1}), {8, 8});
}

void DesktopEntriesTest::windowIcons()
{
    QFETCH(const std::vector<uint32_t>, property);
    const QImage image = X11::windowIcon(property, 32);
    QTEST(image.isNull() ? QSize() : image.size(), "size");
    if (!image.isNull())
        QCOMPARE(image.pixelColor(image.width() - 1, image.height() - 1), QColor(0x33, 0x66, 0x99));
}

QTEST_GUILESS_MAIN(DesktopEntriesTest)
#include "DesktopEntriesTest.moc"
