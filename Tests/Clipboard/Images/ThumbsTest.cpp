#include "Thumbs.h"
#include "EncodedPicture.h"
#include "Fakes.h"
#include "IconCache.h"
#include "ImageBlobs.h"
#include "ImageDimensions.h"
#include "ThumbFiles.h"

#include <QFileInfo>
#include <QPixmap>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

class ThumbsTest final : public QObject
{
    Q_OBJECT
private slots:
    void fitsTheLargerSide();
    void forgetsFailuresWhenTold();
    void smallCopyStandsForThePicture();
    void smallCopyGoesWithItsPicture();
    void readsWhatWasAskedForLastFirst();
    void survivesItsEndWhileLoading();
    void remembersIconsAndLabels();

private:
    [[nodiscard]] QString picture(const QString& name, const QSize& size)
    {
        QString path = m_folder.filePath(name);
        filled(size, Qt::red).save(path);
        return path;
    }
    static Thumbs::Thumb loaded(Thumbs& thumbs, const QString& path, int maxPixel)
    {
        QSignalSpy finished(&thumbs, &Thumbs::finished);
        if (thumbs.thumb(path, maxPixel).phase == Thumbs::Phase::loading)
            finished.wait(patience);
        return thumbs.thumb(path, maxPixel);
    }

    QTemporaryDir m_folder;
};

void ThumbsTest::fitsTheLargerSide()
{
    Thumbs thumbs;
    const std::pair<QSize, QSize> sizes[] = {
        {{400, 200}, {100, 50}}, {{2000, 1}, {100, 1}}, {{40, 30}, {40, 30}}, // small ones stay
    };
    for (const auto& [size, expected] : sizes) {
        const auto thumb = loaded(thumbs, picture(u"%1.png"_s.arg(size.width()), size), 100);
        QCOMPARE(thumb.phase, Thumbs::Phase::loaded);
        QCOMPARE(thumb.image.size(), expected);
    }

    // An APP1 segment with one EXIF entry: orientation 6, a quarter turn.
    QByteArray turned = encoded(filled({20, 10}, Qt::blue), "jpg");
    turned.insert(2, QByteArray::fromHex("ffe100224578696600004d4d002a00000008000101120003000000010006000000000000"));
    QFile file(m_folder.filePath(u"turned.jpg"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(turned) == turned.size() && file.flush());
    QCOMPARE(loaded(thumbs, file.fileName(), 100).image.size(), QSize(10, 20));
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

    // What somebody put in a picture's place holds nothing up.
    const QByteArray pipe = QFile::encodeName(m_folder.filePath(u"pipe.png"_s));
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    for (const char* name : {pipe.constData(), "/dev/zero", "/"}) {
        QCOMPARE(loaded(thumbs, QFile::decodeName(name), 50).phase, Thumbs::Phase::unavailable);
        QCOMPARE(ImageDimensions::label(QFile::decodeName(name)), std::nullopt);
    }
}

void ThumbsTest::smallCopyStandsForThePicture()
{
    // Nothing for a damaged one.
    for (const QSize copy : {QSize(696, 348), QSize(), QSize(100, 50)}) {
        const QString path =
            ImageBlobs::write(filled({1000, 500}, Qt::red), m_folder.filePath(u"images"_s)).value_or(QString());
        const QString copyPath = ThumbFiles::path(path);
        QVERIFY(QFile::exists(copyPath));
        QVERIFY(filled(copy.expandedTo({1, 1}), Qt::blue).save(copyPath, "png"));
        if (!copy.isValid())
            QVERIFY(QFile::resize(copyPath, 40));
        Thumbs thumbs;
        const Thumbs::Thumb preview = loaded(thumbs, path, 348);
        QCOMPARE(preview.image.size(), QSize(348, 174));
        QCOMPARE(preview.image.pixelColor(9, 9), QColor(copy.width() == 696 ? Qt::blue : Qt::red));
        QCOMPARE(QImage(copyPath).size(), QSize(696, 348)); // made again where it was no good
        // More than the copy has.
        QCOMPARE(loaded(thumbs, path, 870).image.pixelColor(9, 9), QColor(Qt::red));
    }
}

void ThumbsTest::smallCopyGoesWithItsPicture()
{
    const QString large = picture(u"0123456789abcdef"_s.repeated(4) + u".png"_s, {1000, 500});
    const QString foreign = picture(u"holiday.png"_s, {1000, 500});
    Thumbs thumbs;
    thumbs.prepare(large);
    Q_UNUSED(loaded(thumbs, foreign, 56))
    QTRY_VERIFY(QFile::exists(ThumbFiles::path(large)));
    QVERIFY(!QFile::exists(ThumbFiles::path(foreign))); // its folder is not ours
    const auto others = QFile::ReadGroup | QFile::ReadOther;
    QVERIFY(!(QFile::permissions(ThumbFiles::path(large)) & others));
    QVERIFY(!(QFile::permissions(QFileInfo(ThumbFiles::path(large)).path()) & others));
    ImageBlobs::release({{QUuid::createUuid(), ClipboardCore::ClipType::image, large, {}, {}, 0, false}});
    QVERIFY(!QFile::exists(ThumbFiles::path(large)));
    QCOMPARE(loaded(thumbs, large, 56).phase, Thumbs::Phase::unavailable);
}

void ThumbsTest::readsWhatWasAskedForLastFirst()
{
    Thumbs thumbs;
    QStringList order;
    connect(&thumbs, &Thumbs::finished, this, [&](const QString& path, int maxPixel) {
        order.append(QFileInfo(path).baseName() + u'@' + QString::number(maxPixel));
    });
    for (int i = 0; i < 30; ++i)
        Q_UNUSED(thumbs.thumb(picture(u"%1.png"_s.arg(i), {60, 60}), 28))
    Q_UNUSED(thumbs.thumb(m_folder.filePath(u"20.png"_s), 40)) // the preview, and its row after it
    Q_UNUSED(thumbs.thumb(m_folder.filePath(u"29.png"_s), 28))
    QTRY_COMPARE(order.size(), 18);
    QCOMPARE(order.first(4), (QStringList{u"0@28"_s, u"20@40"_s, u"20@28"_s, u"29@28"_s}));
    QCOMPARE(order.last(), u"14@28"_s); // what was asked for before that is not on the screen any more
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

void ThumbsTest::remembersIconsAndLabels()
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

    const QString path = m_folder.filePath(u"unlabelled.png"_s);
    QCOMPARE(ImageDimensions::label(path), std::nullopt);
    Q_UNUSED(picture(u"unlabelled.png"_s, {1200, 7}))
    QCOMPARE(ImageDimensions::label(path), std::nullopt); // the failure is remembered
    QCOMPARE(ImageDimensions::label(picture(u"labelled.png"_s, {1200, 7})), u"1,200 × 7"_s);
}

QTEST_MAIN(ThumbsTest)
#include "ThumbsTest.moc"
