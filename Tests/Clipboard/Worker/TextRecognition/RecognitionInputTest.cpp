#include "RecognitionPicture.h"
#include "TesseractLanguages.h"

#include <QTest>

#include <utility>

using namespace Clipboard;
using namespace Qt::StringLiterals;

/// What the recognizer is given: a picture that suits it, and the languages to look for.
class RecognitionInputTest final : public QObject
{
    Q_OBJECT
private slots:
    void sizes();
    void grounds();
    void languages();
};

void RecognitionInputTest::sizes()
{
    const std::pair<QSize, QSize> sizes[] = {
        {{1, 1}, {2, 2}},              // doubled,
        {{3840, 2160}, {7680, 4320}},  // up to the screenshot of a 4K screen
        {{3841, 2160}, {3841, 2160}},  // larger ones stay,
        {{15360, 8640}, {7680, 4320}}, // up to a bound
        {{1, 20'000}, {2, 40'000}},
        {{}, {0, 0}},
    };
    for (const auto& [size, expected] : sizes) {
        QImage image(size, QImage::Format_Grayscale8);
        image.fill(255);
        QCOMPARE(recognitionPicture(image).size(), expected);
    }
}

void RecognitionInputTest::grounds()
{
    const std::pair<QColor, QColor> inksAndGrounds[] = {{Qt::black, Qt::white},
                                                        {Qt::white, Qt::black},
                                                        {Qt::black, Qt::transparent},
                                                        {Qt::white, Qt::transparent},
                                                        {Qt::white, QColor(255, 255, 255, 0)}};
    for (const auto& [ink, ground] : inksAndGrounds) {
        QImage image(30, 30, QImage::Format_ARGB32);
        image.fill(ground);
        for (int y = 10; y < 20; ++y)
            for (int x = 10; x < 20; ++x)
                image.setPixelColor(x, y, ink);
        const QImage prepared = recognitionPicture(image);
        QCOMPARE(prepared.format(), QImage::Format_Grayscale8);
        QCOMPARE(qGray(prepared.pixel(2, 2)), 255);
        QCOMPARE(qGray(prepared.pixel(30, 30)), 0);
    }
}

void RecognitionInputTest::languages()
{
    const std::pair<QStringList, QByteArray> languages[] = {
        {{u"qqq-XX"_s, u"../../etc"_s}, "eng"},
        {{u"en-GB"_s, u"fr-FR"_s}, "eng+fra"},
        {{u"de"_s, u"fr"_s, u"it"_s}, "deu+fra+eng"},
        {{u"zh-Hans-CN"_s}, "chi_sim+eng"},
        {{u"zh-TW"_s}, "chi_tra+eng"},
        {{u"sr-Latn-RS"_s, u"sr-RS"_s}, "srp_latn+srp+eng"},
        {{u"el-GR"_s, u"nn-NO"_s}, "ell+nor+eng"},
    };
    for (const auto& [user, expected] : languages)
        QCOMPARE(tesseractLanguages(user), expected);
}

QTEST_GUILESS_MAIN(RecognitionInputTest)
#include "RecognitionInputTest.moc"
