#include "Theme.h"

#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Clipboard;
using ClipboardCore::ClipType;

namespace {

/// Relative luminance as WCAG 2.1 defines it.
double luminance(const QColor& color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

constexpr double forText = 4.5;
constexpr double forMarks = 3;

/// What is drawn on one ground, all of it.
struct Ground
{
    QColor color;
    QList<QColor> texts;
    QList<QColor> marks = {};
};

QList<Ground> grounds()
{
    using namespace Theme;
    return {{panel, {text, text2, text3}, {accent}},
            {pane, {text, text2, text3}, {accent}},
            {well, {text, text3}},
            {raised, {text, text2, text3}, {accent, success, warning}},
            {rowHover, {text, text2, text3}},
            {rowSel, {text, text2, accentSoft}, {accent}},
            {rowIdle, {text, text2}},
            {control, {text, text2}},
            {controlHover, {text, text2}, {danger}},
            {controlPress, {text, text2}},
            {kbdSel, {text}},
            {tip, {text}},
            {tipCap, {tipCapText}},
            {rowSelLine, {text}},
            {faint, {text3}},
            {accent, {onAccent}},
            {accentHover, {onAccent}},
            {accentPress, {onAccent}},
            {dangerFill, {onDanger}},
            {dangerFillHover, {onDanger}},
            {dangerCap, {onDanger}},
            {qrGround, {well}}};
}

void expectContrast(const QColor& ground, const QList<QColor>& colors, double least)
{
    for (const QColor& color : colors)
        QVERIFY2(contrast(color, ground) >= least, qPrintable(color.name() + u' ' + ground.name()));
}

} // namespace

class ContrastTest final : public QObject
{
    Q_OBJECT
private slots:
    void isReadable();
};

void ContrastTest::isReadable()
{
    for (const Ground& ground : grounds()) {
        expectContrast(ground.color, ground.texts, forText);
        expectContrast(ground.color, ground.marks, forMarks);
    }
    for (const ClipType type : ClipboardCore::allClipTypes) {
        for (const QColor ground : {Theme::panel, Theme::rowHover, Theme::rowSel, Theme::rowIdle, Theme::control})
            expectContrast(ground, {Theme::readableTint(type)}, forText);
    }
}

QTEST_APPLESS_MAIN(ContrastTest)

#include "ContrastTest.moc"
