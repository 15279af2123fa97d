#include "UriList.h"
#include "Rows.h"

#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

class UriListTest final : public QObject
{
    Q_OBJECT
private slots:
    void localFiles();
    void writtenListsReadBack();
};

void UriListTest::localFiles()
{
    const auto check = [](const char* /*name*/, const QByteArray& list, const QStringList& expected) {
        QStringList paths;
        for (const QUrl& file : UriList::localFiles(list, "thishost"))
            paths.append(file.toLocalFile());
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
                       {"scheme in capitals", "FILE:///a", {u"/a"_s}},
                       {"not a file", "https://example.org/a\r\nsftp://host/b\r\nfile:///c", {u"/c"_s}},
                       {"not UTF-8", "file:///caf%E9\r\nfile:///b", {u"/b"_s}},
                       {"none", "file://elsewhere/a\nfile:///a%00b\nfile:a\nfile://localhost", {}}});
}

void UriListTest::writtenListsReadBack()
{
    const QList<QUrl> files{QUrl::fromLocalFile(u"/tmp/a b#c%41d?e&f'g\"h\\i[j]ä😀\n.txt"_s),
                            QUrl::fromLocalFile(u"/second"_s)};
    QCOMPARE(UriList::localFiles(UriList::uriList(files), {}), files);
    QCOMPARE(UriList::localFiles(UriList::copiedFiles(files), {}), files);
    QVERIFY(UriList::copiedFiles(files).startsWith("copy\nfile:///"));
    QCOMPARE(UriList::uriList(files).count("\r\n"), 2);

    const QByteArray tooMany = QByteArray("file:///a\n").repeated(UriList::maxFiles + 1);
    QCOMPARE(UriList::localFiles(tooMany, {}).size(), UriList::maxFiles);
}

QTEST_GUILESS_MAIN(UriListTest)
#include "UriListTest.moc"
