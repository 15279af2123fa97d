#include "Actions/ColorMath.h"

#include <QTest>

#include <utility>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

class ColorMathTest final : public QObject
{
    Q_OBJECT
private slots:
    void readsHexLiterals();
    void convertsToHSL();
};

void ColorMathTest::readsHexLiterals()
{
    const std::pair<QString, ColorMath::RGB> literals[] = {
        {u"#FF8000"_s, {255, 128, 0}}, {u"#AbC"_s, {170, 187, 204}}, {u" #FF000080\n"_s, {255, 0, 0}}};
    for (const auto& [text, rgb] : literals)
        QCOMPARE(ColorMath::hexToRGB(text), std::optional(rgb));
    // The last two have signs that look like digits once they are masked or folded.
    for (const auto& text : {u"#ABCD"_s, u"#1234567"_s, u"FF0000"_s, u"#GG0000"_s, u"#\uFF11bc"_s, u"#\u0141bc"_s})
        QCOMPARE(ColorMath::hexToRGB(text), std::nullopt);
}

void ColorMathTest::convertsToHSL()
{
    const std::pair<ColorMath::RGB, ColorMath::HSL> colors[] = {
        {{255, 0, 0}, {0, 100, 50}},
        {{10, 200, 30}, {126, 90, 41}},
        {{0, 128, 255}, {210, 100, 50}},
        {{128, 128, 128}, {0, 0, 50}},
        {{255, 0, 1}, {360, 100, 50}}}; // a hue is rounded, and not wrapped then
    for (const auto& [rgb, hsl] : colors)
        QCOMPARE(ColorMath::rgbToHSL(rgb.r, rgb.g, rgb.b), hsl);
}

QTEST_APPLESS_MAIN(ColorMathTest)
#include "ColorMathTest.moc"
