#include "UriList.h"

#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

class UriListTest final : public QObject
{
    Q_OBJECT
private slots:
    void localFiles_data();
    void localFiles();
    void writtenListsReadBack();
};

void UriListTest::localFiles_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QStringList>("paths");

    const auto row = [](const char* name, const QByteArray& list, const QStringList& paths) {
        QTest::newRow(name) << list << paths;
    };
    row("line feed only, no end", "file:///a\nfile:///b", {u"/a"_s, u"/b"_s});
    row("comments and empty lines", "# list\r\n\r\nfile:///a\r\n#file:///b\r\n", {u"/a"_s});
    row("cut files", "cut\nfile:///a", {u"/a"_s});
    row("zero byte at the end", QByteArray("file:///a\r\n\0", 12), {u"/a"_s});
    row("UTF-8, escaped", "file:///%C3%A4", {u"/ä"_s});
    row("UTF-8, bare", "file:///\xC3\xA4", {u"/ä"_s});
    row("number sign, percent and question mark", "file:///a%23b%25c%3Fd", {u"/a#b%c?d"_s});
    row("bare number sign and question mark", "file:///a#b?c", {u"/a#b?c"_s});
    row("localhost", "file://localhost/a", {u"/a"_s});
    row("this machine", "file://ThisHost/a", {u"/a"_s});
    row("one slash", "file:/a", {u"/a"_s});
    row("four slashes", "file:////a", {u"/a"_s});
    row("scheme in capitals", "FILE:///a", {u"/a"_s});
    row("another machine", "file://elsewhere/a", {});
    row("not a file", "https://example.org/a\r\nsftp://host/b\r\nfile:///c", {u"/c"_s});
    row("not UTF-8", "file:///caf%E9\r\nfile:///b", {u"/b"_s});
    row("zero byte in the name", "file:///a%00b", {});
    row("relative", "file:a", {});
    row("host without a path", "file://localhost", {});
}

void UriListTest::localFiles()
{
    QFETCH(const QByteArray, list);
    QStringList paths;
    for (const QUrl& file : UriList::localFiles(list, "thishost"))
        paths.append(file.toLocalFile());
    QTEST(paths, "paths");
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
