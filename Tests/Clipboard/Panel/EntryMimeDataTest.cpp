#include "EntryMimeData.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Clipboard;
using namespace Qt::StringLiterals;
using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;

class EntryMimeDataTest final : public QObject
{
    Q_OBJECT
private slots:
    void textsGoAsText();
    void filesAndPicturesGoByTheirFile();
    void nothingGoesWithoutItsFile();

private:
    [[nodiscard]] static ClipItem item(ClipType type, const QString& content)
    {
        return {QUuid::createUuid(), type, content, std::nullopt, std::nullopt, 0, false};
    }
    QTemporaryDir m_folder;
};

void EntryMimeDataTest::textsGoAsText()
{
    for (const ClipType type : {ClipType::text, ClipType::link, ClipType::color, ClipType::code}) {
        const auto data = EntryMimeData::make(item(type, u"žluťoučký kůň"_s));
        QCOMPARE(data->formats(), QStringList({u"text/plain"_s}));
        QCOMPARE(data->text(), u"žluťoučký kůň"_s);
    }
}

void EntryMimeDataTest::filesAndPicturesGoByTheirFile()
{
    const QString path = m_folder.filePath(u"with space.png"_s);
    QFile file(path);
    QVERIFY(file.open(QFile::WriteOnly) && file.write("picture") == 7);
    file.close();
    const auto asFile = EntryMimeData::make(item(ClipType::file, path));
    QCOMPARE(asFile->formats(), QStringList({u"text/uri-list"_s}));
    QCOMPARE(asFile->urls(), QList<QUrl>({QUrl::fromLocalFile(path)}));
    const auto asPicture = EntryMimeData::make(item(ClipType::image, path));
    QCOMPARE(asPicture->formats(), QStringList({u"image/png"_s, u"text/uri-list"_s}));
    QCOMPARE(asPicture->data(u"image/png"_s), QByteArray("picture"));
    QCOMPARE(asPicture->urls(), asFile->urls());
}

void EntryMimeDataTest::nothingGoesWithoutItsFile()
{
    for (const ClipType type : {ClipType::file, ClipType::image})
        QVERIFY(!EntryMimeData::make(item(type, m_folder.filePath(u"gone"_s))));
}

QTEST_GUILESS_MAIN(EntryMimeDataTest)

#include "EntryMimeDataTest.moc"
