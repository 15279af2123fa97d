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

} // namespace

class ContrastTest final : public QObject
{
    Q_OBJECT
private slots:
    void isReadable_data();
    void isReadable();
    void tintsAreReadable();
};

void ContrastTest::isReadable_data()
{
    QTest::addColumn<QColor>("foreground");
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<double>("least");
    const auto row = [](const char* name, const QColor& foreground, const QColor& ground, double least = forText) {
        QTest::newRow(name) << foreground << ground << least;
    };
    // Every pair of text and ground that is drawn; where a control changes its ground, each of its grounds.
    row("field, headings, row titles", Theme::text, Theme::panel);
    row("preview", Theme::text, Theme::pane);
    row("code", Theme::text, Theme::well);
    row("sheet, notice, menu, dialog", Theme::text, Theme::raised);
    row("row title, hover", Theme::text, Theme::rowHover);
    row("row title, selected; chip, selected", Theme::text, Theme::rowSel);
    row("row title, focus elsewhere", Theme::text, Theme::rowIdle);
    row("button", Theme::text, Theme::control);
    row("button, hover", Theme::text, Theme::controlHover);
    row("button, pressed", Theme::text, Theme::controlPress);
    row("cap on a selected row", Theme::text, Theme::kbdSel);
    row("tooltip", Theme::text, Theme::tip);
    row("selected text", Theme::text, Theme::rowSelLine);
    row("hints", Theme::text2, Theme::panel);
    row("caption, section header", Theme::text2, Theme::pane);
    row("dialog text, sheet legend", Theme::text2, Theme::raised);
    row("chip, key cap", Theme::text2, Theme::control);
    row("chip's count, hover", Theme::text2, Theme::controlHover);
    row("chip, pressed", Theme::text2, Theme::controlPress);
    row("scheme and pin, hover", Theme::text2, Theme::rowHover);
    row("age, selected", Theme::text2, Theme::rowSel);
    row("age, focus elsewhere", Theme::text2, Theme::rowIdle);
    row("age, placeholder", Theme::text3, Theme::panel);
    row("key of a color", Theme::text3, Theme::pane);
    row("placeholder of the sheet", Theme::text3, Theme::raised);
    row("no picture", Theme::text3, Theme::well);
    row("empty chip, dimmed cap", Theme::text3, Theme::faint);
    row("age, hover", Theme::text3, Theme::rowHover);
    row("selected chip's count, pin", Theme::accentSoft, Theme::rowSel);
    row("tooltip cap", Theme::tipCapText, Theme::tipCap);
    row("primary button", Theme::onAccent, Theme::accent);
    row("primary button, hover", Theme::onAccent, Theme::accentHover);
    row("primary button, pressed", Theme::onAccent, Theme::accentPress);
    row("destructive button", Theme::onDanger, Theme::dangerFill);
    row("destructive button, hover", Theme::onDanger, Theme::dangerFillHover);
    row("cap of the destructive button", Theme::onDanger, Theme::dangerCap);
    row("ring on panel", Theme::accent, Theme::panel, forMarks);
    row("ring on raised", Theme::accent, Theme::raised, forMarks);
    row("ring on pane", Theme::accent, Theme::pane, forMarks);
    row("filled pin", Theme::accent, Theme::rowSel, forMarks);
    row("delete sign", Theme::danger, Theme::controlHover, forMarks);
    row("toast sign", Theme::success, Theme::raised, forMarks);
    row("dialog sign", Theme::warning, Theme::raised, forMarks);
    row("QR code", Theme::well, Theme::qrGround);
}

void ContrastTest::isReadable()
{
    QFETCH(QColor, foreground);
    QFETCH(QColor, ground);
    QFETCH(double, least);
    const double ratio = contrast(foreground, ground);
    QVERIFY2(ratio >= least, qPrintable(QString::number(ratio)));
}

void ContrastTest::tintsAreReadable()
{
    const QList<QColor> grounds{Theme::panel, Theme::rowHover, Theme::rowSel, Theme::rowIdle, Theme::control};
    for (const ClipType type : ClipboardCore::allClipTypes) {
        for (const QColor& ground : grounds) {
            const double ratio = contrast(Theme::readableTint(type), ground);
            QVERIFY2(ratio >= forText, qPrintable(rawValue(type) + QString::number(ratio)));
        }
    }
}

QTEST_APPLESS_MAIN(ContrastTest)

#include "ContrastTest.moc"
