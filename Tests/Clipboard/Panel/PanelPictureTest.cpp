#include "PanelFixture.h"

#include <algorithm>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using ClipboardCore::ClipType;
using ClipboardCore::FocusKey;
using ClipboardCore::ItemAction;

/// Colours at places that no font moves: where a seam runs, what a ground is filled with, what surrounds a control.
class PanelPictureTest final : public QObject
{
    Q_OBJECT
private slots:
    void isDrawnAsDesigned_data();
    void isDrawnAsDesigned();
};

namespace {

struct Mark
{
    const char* name;
    QPoint place; // logical pixels in the panel
    QColor color;
};

const QColor terracotta(0xE2, 0x72, 0x5B);

QColor over(const QColor& ground, QColor top)
{
    const float alpha = top.alphaF();
    const auto mix = [alpha](float below, float above) { return below + (above - below) * alpha; };
    return QColor::fromRgbF(mix(ground.redF(), top.redF()), mix(ground.greenF(), top.greenF()),
                            mix(ground.blueF(), top.blueF()));
}

/// A row of the list starts here.
QPoint row(int number)
{
    return {Theme::listMargin, Theme::headerHeight + Theme::listMargin + number * Theme::rowHeight};
}

QPoint leftMiddle(const QRect& frame, int inside)
{
    return {frame.left() + inside, frame.center().y()};
}

void expect(PanelFixture& f, qreal ratio, const QList<Mark>& marks)
{
    f.view()->sync();
    QImage image(f.panel.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    f.panel.render(&image);
    for (const Mark& mark : marks) {
        const QColor found = image.pixelColor(f.view()->mapTo(&f.panel, mark.place) * ratio);
        // Blending rounds; nothing else may differ.
        const int difference =
            std::max({std::abs(found.red() - mark.color.red()), std::abs(found.green() - mark.color.green()),
                      std::abs(found.blue() - mark.color.blue())});
        QVERIFY2(difference <= 1,
                 qPrintable(u"%1: %2, not %3"_s.arg(QLatin1String(mark.name), found.name(), mark.color.name())));
    }
}

} // namespace

void PanelPictureTest::isDrawnAsDesigned_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("at 1") << 1.0;
    QTest::newRow("at 2") << 2.0;
}

void PanelPictureTest::isDrawnAsDesigned()
{
    QFETCH(qreal, ratio);
    PanelFixture f;
    f.catalogue = {f.action(u"Slugify"_s), f.action(u"QR code"_s)};
    f.fill({f.item(ClipType::text, u"some words"_s), f.item(ClipType::color, terracotta.name()),
            f.item(ClipType::code, u"let tide = 4;"_s)});
    QVERIFY(f.open());
    QColor emptyDot = Theme::tint(ClipType::file);
    emptyDot.setAlphaF(float(Theme::emptyChipDotOpacity));
    QColor tile = Theme::tint(ClipType::code);
    tile.setAlpha(Theme::tileAlpha);
    expect(f, ratio,
           {{"seam of the header", {300, 87}, Theme::seam},
            {"seam of the list", {239, 300}, Theme::seam},
            {"seam of the footer", {300, 504}, Theme::seam},
            {"chosen chip", leftMiddle(f.frame(FocusKey::chip(std::nullopt)), 3), Theme::rowSel},
            {"dot of a chip without entries", leftMiddle(f.frame(FocusKey::chip(ClipType::file)), 11),
             over(Theme::faint, emptyDot)},
            {"line of the selected row", row(0) + QPoint(0, 22), Theme::rowSelLine},
            {"row", row(1) + QPoint(4, 22), Theme::panel},
            {"swatch", row(1) + QPoint(22, 22), terracotta},
            {"tile", row(2) + QPoint(10, 22), over(Theme::panel, tile)},
            {"primary button", leftMiddle(f.frame(FocusKey::button(ItemAction::paste)), 3), Theme::accent},
            {"line of a button", leftMiddle(f.frame(FocusKey::button(ItemAction::pin)), 0), Theme::controlLine}});
    f.press(Qt::Key_Right);
    const QRect chip = f.frame(FocusKey::action(0));
    expect(f, ratio,
           {{"ring", leftMiddle(chip, -2), Theme::accent},
            {"between ring and chip", leftMiddle(chip, -1), Theme::pane},
            {"line of an action chip", leftMiddle(chip, 0), Theme::controlLine},
            {"row without the focus", row(0) + QPoint(4, 22), Theme::rowIdle}});
    f.press(Qt::Key_Escape);
    f.press(Qt::Key_Down);
    expect(f, ratio, {{"large swatch", {305, 153}, terracotta}, {"seam between values", {500, 137}, Theme::seam}});
    f.press(Qt::Key_Down);
    expect(f, ratio, {{"well", {590, 112}, Theme::well}});
    f.press(Qt::Key_K, Qt::ControlModifier);
    expect(f, ratio,
           {{"shade over the header", {300, 6}, over(Theme::panel, Theme::backdrop)},
            {"line of the card", {300, 97}, Theme::outline},
            {"line of the highlighted row", {126, 210}, Theme::rowSelLine},
            {"row of the sheet", {130, 248}, Theme::raised}});
}

QTEST_MAIN(PanelPictureTest)

#include "PanelPictureTest.moc"
