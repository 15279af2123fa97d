#include "EntryMimeData.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Clipboard;
using namespace Qt::StringLiterals;
using ClipboardCore::ClipType;

class EntryMimeDataTest final : public QObject
{
    Q_OBJECT
private slots:
    void textsGoAsText();
    void filesAndPicturesGoByTheirFile();
};

namespace {

std::unique_ptr<QMimeData> made(ClipType type, const QString& content)
{
    return EntryMimeData::make({QUuid::createUuid(), type, content, std::nullopt, std::nullopt, 0, false});
}

} // namespace

void EntryMimeDataTest::textsGoAsText()
{
    for (const ClipType type : {ClipType::text, ClipType::link, ClipType::color, ClipType::code}) {
        const auto data = made(type, u"žluťoučký kůň"_s);
        QCOMPARE(data->formats(), QStringList({u"text/plain"_s}));
        QCOMPARE(data->text(), u"žluťoučký kůň"_s);
    }
}

void EntryMimeDataTest::filesAndPicturesGoByTheirFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"with space.png"_s);
    QFile file(path);
    for (const ClipType type : {ClipType::file, ClipType::image})
        QVERIFY(!made(type, path)); // nothing goes without its file
    QVERIFY(file.open(QFile::WriteOnly) && file.write("picture") == 7);
    file.close();
    const auto asFile = made(ClipType::file, path);
    QCOMPARE(asFile->formats(), QStringList({u"text/uri-list"_s}));
    QCOMPARE(asFile->urls(), QList<QUrl>({QUrl::fromLocalFile(path)}));
    const auto asPicture = made(ClipType::image, path);
    QCOMPARE(asPicture->formats(), QStringList({u"image/png"_s, u"text/uri-list"_s}));
    QCOMPARE(asPicture->data(u"image/png"_s), QByteArray("picture"));
    QCOMPARE(asPicture->urls(), asFile->urls());
}

QTEST_GUILESS_MAIN(EntryMimeDataTest)

#include "EntryMimeDataTest.moc"
