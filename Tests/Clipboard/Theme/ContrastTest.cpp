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
    row("text on control_hover", Theme::text, Theme::controlHover);
    row("text on row_sel", Theme::text, Theme::rowSel);
    row("text on kbd_sel", Theme::text, Theme::kbdSel);
    row("text on tip", Theme::text, Theme::tip);
    row("text2 on control", Theme::text2, Theme::control);
    row("text2 on row_sel", Theme::text2, Theme::rowSel);
    row("text2 on row_idle", Theme::text2, Theme::rowIdle);
    row("text2 on raised", Theme::text2, Theme::raised);
    row("text3 on panel", Theme::text3, Theme::panel);
    row("text3 on pane", Theme::text3, Theme::pane);
    row("text3 on an empty chip", Theme::text3, Theme::faint);
    row("text3 on row_hover", Theme::text3, Theme::rowHover);
    row("accent_soft on row_sel", Theme::accentSoft, Theme::rowSel);
    row("tooltip cap", Theme::tipCapText, Theme::tipCap);
    row("primary button", Theme::onAccent, Theme::accent);
    row("primary button, pressed", Theme::onAccent, Theme::accentPress);
    row("destructive button", Theme::onDanger, Theme::dangerFill);
    row("destructive button, hover", Theme::onDanger, Theme::dangerFillHover);
    row("cap of the destructive button", Theme::onDanger, Theme::dangerCap);
    row("ring on panel", Theme::accent, Theme::panel, forMarks);
    row("ring on row_sel", Theme::accent, Theme::rowSel, forMarks);
    row("ring on raised", Theme::accent, Theme::raised, forMarks);
    row("delete sign", Theme::danger, Theme::controlHover, forMarks);
    row("toast sign", Theme::success, Theme::raised, forMarks);
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
