#include "Actions/ColorMath.h"

#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

class ColorMathTest final : public QObject
{
    Q_OBJECT
private slots:
    void readsHexLiterals_data();
    void readsHexLiterals();
    void convertsToHSL_data();
    void convertsToHSL();
};

void ColorMathTest::readsHexLiterals_data()
{
    using Expected = std::optional<ColorMath::RGB>;
    QTest::addColumn<QString>("text");
    QTest::addColumn<Expected>("expected");

    QTest::newRow("six digits") << u"#FF8000"_s << Expected({255, 128, 0});
    QTest::newRow("short form doubles each digit") << u"#AbC"_s << Expected({170, 187, 204});
    QTest::newRow("alpha is dropped") << u"#FF000080"_s << Expected({255, 0, 0});
    QTest::newRow("white space around") << u"  #fff\n"_s << Expected({255, 255, 255});
    QTest::newRow("four digits") << u"#ABCD"_s << Expected();
    QTest::newRow("seven digits") << u"#1234567"_s << Expected();
    QTest::newRow("no sign") << u"FF0000"_s << Expected();
    QTest::newRow("not a digit") << u"#GG0000"_s << Expected();
    QTest::newRow("full-width digit") << u"#\uFF11bc"_s << Expected();
    QTest::newRow("letter that folds to ASCII when masked") << u"#\u0141bc"_s << Expected();
}

void ColorMathTest::readsHexLiterals()
{
    QFETCH(QString, text);
    QFETCH(std::optional<ColorMath::RGB>, expected);
    QCOMPARE(ColorMath::hexToRGB(text), expected);
}

void ColorMathTest::convertsToHSL_data()
{
    QTest::addColumn<ColorMath::RGB>("rgb");
    QTest::addColumn<ColorMath::HSL>("hsl");

    QTest::newRow("red") << ColorMath::RGB{255, 0, 0} << ColorMath::HSL{0, 100, 50};
    QTest::newRow("green leads") << ColorMath::RGB{10, 200, 30} << ColorMath::HSL{126, 90, 41};
    QTest::newRow("blue leads") << ColorMath::RGB{0, 128, 255} << ColorMath::HSL{210, 100, 50};
    QTest::newRow("grey has no hue") << ColorMath::RGB{128, 128, 128} << ColorMath::HSL{0, 0, 50};
    QTest::newRow("hue is not wrapped") << ColorMath::RGB{255, 0, 1} << ColorMath::HSL{360, 100, 50};
}

void ColorMathTest::convertsToHSL()
{
    QFETCH(ColorMath::RGB, rgb);
    QFETCH(ColorMath::HSL, hsl);
    QCOMPARE(ColorMath::rgbToHSL(rgb.r, rgb.g, rgb.b), hsl);
}

QTEST_APPLESS_MAIN(ColorMathTest)
#include "ColorMathTest.moc"
