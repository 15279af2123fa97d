#include "Thumbs.h"
#include "FakeWorkspace.h"
#include "IconCache.h"
#include "ImageDimensions.h"

#include <QImage>
#include <QPixmap>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

class ThumbsTest final : public QObject
{
    Q_OBJECT
private slots:
    void fitsTheLargerSide_data();
    void fitsTheLargerSide();
    void keepsSizesApart();
    void turnsPicturesUpright();
    void forgetsFailuresWhenTold();
    void survivesItsEndWhileLoading();
    void asksForEachIconOnce();
    void labelsMissingPicturesOnce();

private:
    [[nodiscard]] QString picture(const QString& name, const QSize& size)
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        QString path = m_folder.filePath(name);
        image.save(path);
        return path;
    }
    static Thumbs::Thumb loaded(Thumbs& thumbs, const QString& path, int maxPixel)
    {
        QSignalSpy finished(&thumbs, &Thumbs::finished);
        if (thumbs.thumb(path, maxPixel).phase == Thumbs::Phase::loading)
            finished.wait();
        return thumbs.thumb(path, maxPixel);
    }

    QTemporaryDir m_folder;
};

void ThumbsTest::fitsTheLargerSide_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("thumb");

    QTest::newRow("wide") << QSize(400, 200) << QSize(100, 50);
    QTest::newRow("tall") << QSize(100, 800) << QSize(12, 100);
    QTest::newRow("a line") << QSize(2000, 1) << QSize(100, 1);
    QTest::newRow("small: not enlarged") << QSize(40, 30) << QSize(40, 30);
}

void ThumbsTest::fitsTheLargerSide()
{
    QFETCH(QSize, size);
    QFETCH(QSize, thumb);
    Thumbs thumbs;
    const Thumbs::Thumb result = loaded(thumbs, picture(u"p.png"_s, size), 100);
    QCOMPARE(result.phase, Thumbs::Phase::loaded);
    QCOMPARE(result.image.size(), thumb);
}

void ThumbsTest::keepsSizesApart()
{
    Thumbs thumbs;
    const QString path = picture(u"p.png"_s, {400, 400});
    QCOMPARE(loaded(thumbs, path, 50).image.width(), 50);
    QCOMPARE(thumbs.thumb(path, 60).phase, Thumbs::Phase::loading);
    QCOMPARE(loaded(thumbs, path, 60).image.width(), 60);
    QVERIFY(QFile::remove(path));
    QCOMPARE(thumbs.thumb(path, 50).image.width(), 50); // from memory
}

void ThumbsTest::turnsPicturesUpright()
{
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::blue);
    const QString path = m_folder.filePath(u"turned.jpg"_s);
    QVERIFY(image.save(path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray jpeg = file.readAll();
    // An APP1 segment with one EXIF entry: orientation 6, a quarter turn.
    const QByteArray exif = QByteArray::fromHex("ffe10022457869660000"
                                                "4d4d002a00000008000101120003000000010006000000000000");
    jpeg.insert(2, exif);
    file.seek(0);
    file.write(jpeg);
    file.close();

    Thumbs thumbs;
    QCOMPARE(loaded(thumbs, path, 100).image.size(), QSize(10, 20));
}

void ThumbsTest::forgetsFailuresWhenTold()
{
    Thumbs thumbs;
    const QString path = m_folder.filePath(u"late.png"_s);
    QCOMPARE(loaded(thumbs, path, 50).phase, Thumbs::Phase::unavailable);
    Q_UNUSED(picture(u"late.png"_s, {10, 10}))
    QCOMPARE(loaded(thumbs, path, 50).phase, Thumbs::Phase::unavailable);
    thumbs.forgetFailures();
    QCOMPARE(loaded(thumbs, path, 50).phase, Thumbs::Phase::loaded);
}

void ThumbsTest::survivesItsEndWhileLoading()
{
    const QString path = picture(u"large.png"_s, {2000, 2000});
    auto thumbs = std::make_unique<Thumbs>();
    int answers = 0;
    connect(thumbs.get(), &Thumbs::finished, this, [&] { ++answers; });
    for (int size = 1; size < 20; ++size)
        Q_UNUSED(thumbs->thumb(path, size))
    thumbs.reset();
    QCoreApplication::processEvents();
    QCOMPARE(answers, 0);
}

void ThumbsTest::asksForEachIconOnce()
{
    Testing::FakeWorkspace workspace;
    workspace.applicationIcons.insert(u"a"_s, QIcon(QPixmap(4, 4)));
    IconCache icons(workspace);
    for (int i = 0; i < 2; ++i) {
        QVERIFY(!IconCache::shared().icon(u"a"_s).isNull());
        QVERIFY(IconCache::shared().icon(u"none"_s).isNull());
        QVERIFY(icons.icon(std::nullopt).isNull());
    }
    QCOMPARE(workspace.applicationIconsAsked, (QStringList{u"a"_s, u"none"_s}));
}

void ThumbsTest::labelsMissingPicturesOnce()
{
    const QString path = m_folder.filePath(u"unlabelled.png"_s);
    QCOMPARE(ImageDimensions::label(path), std::nullopt);
    Q_UNUSED(picture(u"unlabelled.png"_s, {1200, 7}))
    QCOMPARE(ImageDimensions::label(path), std::nullopt); // the failure is remembered
    QCOMPARE(ImageDimensions::label(picture(u"labelled.png"_s, {1200, 7})), u"1,200 × 7"_s);
}

QTEST_MAIN(ThumbsTest)
#include "ThumbsTest.moc"
