#include "History/CopiedFile.h"
#include "Rows.h"
#include "SelectionText.h"
#include "UriList.h"

#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

/// Texts and lists of files as other programs put them on the clipboard.
class SelectionFormatsTest final : public QObject
{
    Q_OBJECT
private slots:
    void texts();
    void localFiles();
    void writtenListsReadBack();
};

void SelectionFormatsTest::texts()
{
    using Text = std::optional<QByteArray>;
    const auto check = [](const char* /*name*/, const QByteArray& type, const QByteArray& bytes, const Text& text) {
        QCOMPARE(SelectionText::decode(type, bytes), text);
    };
    checkRows(+check, {{"broken UTF-8 is replaced", "UTF8_STRING", " a\xFFz \r\n", " a\xEF\xBF\xBDz \r\n"},
                       {"zero bytes at the end", "UTF8_STRING", QByteArray("a\0\0", 3), "a"},
                       {"zero byte inside", "UTF8_STRING", QByteArray("a\0b", 3), QByteArray("a\0b", 3)},
                       {"MIME with a charset in capitals", "text/plain;charset=UTF-8", "\xC3\xA9", "\xC3\xA9"},
                       {"Latin-1 that looks like UTF-8", "STRING", "\xC3\xA9", "\xC3\x83\xC2\xA9"},
                       {"MIME without a charset, UTF-8", "text/plain", "\xC3\xA9", "\xC3\xA9"},
                       {"MIME without a charset, Latin-1", "text/plain", "\xE9", "\xC3\xA9"},
                       {"compound text, UTF-8 inside", "COMPOUND_TEXT", "a\x1b%G\xE2\x82\xAC\x1b%@z", "a\xE2\x82\xACz"},
                       {"compound text, UTF-8 to the end", "COMPOUND_TEXT", "\x1b%G\xE2\x82\xAC", "\xE2\x82\xAC"},
                       {"compound text in another set", "COMPOUND_TEXT", "\x1b$(B\x24\x22", {}},
                       {"not a text", "INTEGER", "1234", {}}});
    QCOMPARE(SelectionText::latin1("\xC3\xA9 \xE2\x82\xAC"), QByteArray("\xE9 ?"));
}

void SelectionFormatsTest::localFiles()
{
    const auto check = [](const char* /*name*/, const QByteArray& list, const QStringList& expected) {
        QStringList paths;
        for (const QUrl& file : UriList::localFiles(list, "thishost"))
            paths.append(ClipboardCore::CopiedFile::content(file).toString());
        QCOMPARE(paths, expected);
    };
    checkRows(+check, {{"line feed only, no end", "file:///a\nfile:///b", {u"/a"_s, u"/b"_s}},
                       {"comments and empty lines", "# list\r\n\r\nfile:///a\r\n#file:///b\r\n", {u"/a"_s}},
                       {"cut files", "cut\nfile:///a", {u"/a"_s}},
                       {"zero byte at the end", QByteArray("file:///a\r\n\0", 12), {u"/a"_s}},
                       {"UTF-8, escaped and bare", "file:///%C3%A4\nfile:///\xC3\xA4", {u"/ä"_s, u"/ä"_s}},
                       {"number sign, percent and question mark", "file:///a%23b%25c%3Fd", {u"/a#b%c?d"_s}},
                       {"bare number sign and question mark", "file:///a#b?c", {u"/a#b?c"_s}},
                       {"this machine", "file://localhost/a\nfile://ThisHost/b", {u"/a"_s, u"/b"_s}},
                       {"one slash", "file:/a", {u"/a"_s}},
                       {"four slashes", "file:////a", {u"/a"_s}},
                       {"slashes, escaped", "file:/%2Fa/b", {u"/a/b"_s}},
                       {"too long for the system", "file:///" + QByteArray(4095, 'a') + "\nfile:///b", {u"/b"_s}},
                       {"scheme in capitals", "FILE:///a", {u"/a"_s}},
                       {"not a file", "https://example.org/a\r\nsftp://host/b\r\nfile:///c", {u"/c"_s}},
                       {"not UTF-8", "file:///%63af%e9/%C3%A4\r\nfile:///b", {u"file:///caf%E9/%C3%A4"_s, u"/b"_s}},
                       {"none", "file://elsewhere/a\nfile:///a%00b\nfile:a\nfile://localhost", {}}});
}

void SelectionFormatsTest::writtenListsReadBack()
{
    const QList<QUrl> files{QUrl::fromLocalFile(u"/tmp/a b#c%41d?e&f'g\"h\\i[j]ä😀\n.txt"_s),
                            QUrl::fromLocalFile(u"/second"_s),
                            ClipboardCore::CopiedFile::urlOfPath("/tmp/caf\xE9 %41#?;\n.txt")};
    QCOMPARE(UriList::localFiles(UriList::uriList(files), {}), files);
    QCOMPARE(UriList::localFiles(UriList::copiedFiles(files), {}), files);
    QVERIFY(UriList::copiedFiles(files).startsWith("copy\nfile:///"));
    QCOMPARE(UriList::uriList(files).count("\r\n"), 3);

    const QByteArray tooMany = QByteArray("file:///a\n").repeated(UriList::maxFiles + 1);
    QCOMPARE(UriList::localFiles(tooMany, {}).size(), UriList::maxFiles);
}

QTEST_GUILESS_MAIN(SelectionFormatsTest)
#include "SelectionFormatsTest.moc"
