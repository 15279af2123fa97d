#include "RecognitionPicture.h"
#include "TesseractLanguages.h"

#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

/// What the recognizer is given: a picture that suits it, and the languages to look for.
class RecognitionInputTest final : public QObject
{
    Q_OBJECT
private slots:
    void sizes_data();
    void sizes();
    void grounds_data();
    void grounds();
    void languages_data();
    void languages();
};

void RecognitionInputTest::sizes_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSize>("expected");

    QTest::newRow("a pixel") << QSize(1, 1) << QSize(2, 2);
    QTest::newRow("a 4K screenshot is doubled") << QSize(3840, 2160) << QSize(7680, 4320);
    QTest::newRow("more than that stays as it is") << QSize(3841, 2160) << QSize(3841, 2160);
    QTest::newRow("beyond the bound") << QSize(15360, 8640) << QSize(7680, 4320);
    QTest::newRow("a line is not narrowed to nothing") << QSize(1, 20'000) << QSize(2, 40'000);
    QTest::newRow("none") << QSize() << QSize(0, 0);
}

void RecognitionInputTest::sizes()
{
    QFETCH(QSize, picture);
    QFETCH(QSize, expected);
    QImage image(picture, QImage::Format_Grayscale8);
    image.fill(255);
    QCOMPARE(recognitionPicture(image).size(), expected);
}

void RecognitionInputTest::grounds_data()
{
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<QColor>("ink");

    QTest::newRow("black on white") << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("white on black") << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("black on nothing") << QColor(Qt::transparent) << QColor(Qt::black);
    QTest::newRow("white on nothing") << QColor(Qt::transparent) << QColor(Qt::white);
    QTest::newRow("white on invisible white") << QColor(255, 255, 255, 0) << QColor(Qt::white);
}

void RecognitionInputTest::grounds()
{
    QFETCH(QColor, ground);
    QFETCH(QColor, ink);
    QImage image(30, 30, QImage::Format_ARGB32);
    image.fill(ground);
    for (int y = 10; y < 20; ++y) {
        for (int x = 10; x < 20; ++x)
            image.setPixelColor(x, y, ink);
    }
    const QImage prepared = recognitionPicture(image);
    QCOMPARE(prepared.format(), QImage::Format_Grayscale8);
    QCOMPARE(qGray(prepared.pixel(2, 2)), 255);
    QCOMPARE(qGray(prepared.pixel(30, 30)), 0);
}

void RecognitionInputTest::languages_data()
{
    QTest::addColumn<QStringList>("user");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("none") << QStringList() << QByteArray("eng");
    QTest::newRow("the C locale") << QStringList{u"C"_s} << QByteArray("eng");
    QTest::newRow("unknown") << QStringList{u"qqq-XX"_s, u"../../etc"_s} << QByteArray("eng");
    QTest::newRow("German") << QStringList{u"de-DE"_s, u"de"_s} << QByteArray("deu+eng");
    QTest::newRow("English first") << QStringList{u"en-GB"_s, u"fr-FR"_s} << QByteArray("eng+fra");
    QTest::newRow("only the first") << QStringList{u"de"_s, u"fr"_s, u"it"_s} << QByteArray("deu+fra+eng");
    QTest::newRow("simplified Chinese") << QStringList{u"zh-Hans-CN"_s} << QByteArray("chi_sim+eng");
    QTest::newRow("traditional Chinese") << QStringList{u"zh-TW"_s} << QByteArray("chi_tra+eng");
    QTest::newRow("Norwegian") << QStringList{u"nb-NO"_s, u"nn-NO"_s} << QByteArray("nor+eng");
    QTest::newRow("Serbian, both scripts")
        << QStringList{u"sr-Latn-RS"_s, u"sr-RS"_s} << QByteArray("srp_latn+srp+eng");
    QTest::newRow("Greek") << QStringList{u"el-GR"_s} << QByteArray("ell+eng");
    QTest::newRow("Czech") << QStringList{u"cs-CZ"_s} << QByteArray("ces+eng");
}

void RecognitionInputTest::languages()
{
    QFETCH(QStringList, user);
    QTEST(tesseractLanguages(user), "expected");
}

QTEST_GUILESS_MAIN(RecognitionInputTest)
#include "RecognitionInputTest.moc"
