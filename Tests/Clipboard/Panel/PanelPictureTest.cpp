#include "PanelFixture.h"

#include <algorithm>
#include <functional>

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

struct Scene
{
    const char* name;
    std::function<void(PanelFixture&)> stage;
    std::function<QList<Mark>(const PanelFixture&)> marks;
};

const QColor terracotta(0xE2, 0x72, 0x5B);

QColor over(const QColor& ground, QColor top)
{
    const float alpha = top.alphaF();
    const auto mix = [alpha](float below, float above) { return below + (above - below) * alpha; };
    return QColor::fromRgbF(mix(ground.redF(), top.redF()), mix(ground.greenF(), top.greenF()),
                            mix(ground.blueF(), top.blueF()));
}

QColor tile(ClipType type, const QColor& ground)
{
    QColor color = Theme::tint(type);
    color.setAlpha(Theme::tileAlpha);
    return over(ground, color);
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

QList<Mark> atRest(const PanelFixture& f)
{
    const QRect files = f.frame(FocusKey::chip(ClipType::file));
    const QRect pin = f.frame(FocusKey::button(ItemAction::pin));
    QColor emptyDot = Theme::tint(ClipType::file);
    emptyDot.setAlphaF(float(Theme::emptyChipDotOpacity));
    return {
        {"seam of the header", {300, 87}, Theme::seam},
        {"seam of the list", {239, 300}, Theme::seam},
        {"seam of the footer", {300, 504}, Theme::seam},
        {"chosen chip", leftMiddle(f.frame(FocusKey::chip(std::nullopt)), 3), Theme::rowSel},
        {"dot of a chip without entries", leftMiddle(files, 11), over(Theme::faint, emptyDot)},
        {"line of the selected row", row(0) + QPoint(0, 22), Theme::rowSelLine},
        {"tile in the selected row", row(0) + QPoint(10, 22), tile(ClipType::text, Theme::rowSel)},
        {"row", row(1) + QPoint(4, 22), Theme::panel},
        {"swatch", row(1) + QPoint(22, 22), terracotta},
        {"tile", row(2) + QPoint(10, 22), tile(ClipType::code, Theme::panel)},
        {"primary button", leftMiddle(f.frame(FocusKey::button(ItemAction::paste)), 3), Theme::accent},
        {"line of a button", leftMiddle(pin, 0), Theme::controlLine},
        {"line of an action chip", leftMiddle(f.frame(FocusKey::action(0)), 0), Theme::controlLine},
    };
}

QList<Mark> focusedChip(const PanelFixture& f)
{
    const QRect chip = f.frame(FocusKey::action(0));
    return {
        {"ring", leftMiddle(chip, -2), Theme::accent},
        {"between ring and chip", leftMiddle(chip, -1), Theme::pane},
        {"row without the focus", row(0) + QPoint(4, 22), Theme::rowIdle},
        {"no line around it", row(0) + QPoint(0, 22), Theme::rowIdle},
    };
}

QList<Mark> colorPreview(const PanelFixture& /*f*/)
{
    return {{"swatch", {305, 153}, terracotta}, {"seam between values", {500, 137}, Theme::seam}};
}

QList<Mark> codePreview(const PanelFixture& /*f*/)
{
    return {{"well", {590, 112}, Theme::well}};
}

QList<Mark> sheet(const PanelFixture& /*f*/)
{
    return {
        {"shade over the header", {300, 6}, over(Theme::panel, Theme::backdrop)},
        {"line of the card", {300, 97}, Theme::outline},
        {"line of the highlighted row", {126, 210}, Theme::rowSelLine},
        {"row", {130, 248}, Theme::raised},
    };
}

void go(PanelFixture& f, int down)
{
    for (int i = 0; i < down; ++i)
        f.press(Qt::Key_Down);
}

QList<Scene> scenes()
{
    const auto rest = [](PanelFixture&) {};
    return {
        {"panel", rest, atRest},
        {"focus on an action", [](PanelFixture& f) { f.press(Qt::Key_Right); }, focusedChip},
        {"color", [](PanelFixture& f) { go(f, 1); }, colorPreview},
        {"code", [](PanelFixture& f) { go(f, 2); }, codePreview},
        {"sheet", [](PanelFixture& f) { f.press(Qt::Key_K, Qt::ControlModifier); }, sheet},
    };
}

} // namespace

void PanelPictureTest::isDrawnAsDesigned_data()
{
    QTest::addColumn<qsizetype>("scene");
    QTest::addColumn<qreal>("ratio");
    for (qsizetype i = 0; i < scenes().size(); ++i) {
        for (const qreal ratio : {1.0, 2.0})
            QTest::addRow("%s at %g", scenes().at(i).name, ratio) << i << ratio;
    }
}

void PanelPictureTest::isDrawnAsDesigned()
{
    QFETCH(qsizetype, scene);
    QFETCH(qreal, ratio);
    PanelFixture f;
    f.catalogue = {f.action(u"Slugify"_s), f.action(u"QR code"_s)};
    f.fill({f.item(ClipType::text, u"some words"_s), f.item(ClipType::color, terracotta.name()),
            f.item(ClipType::code, u"let tide = 4;"_s)});
    QVERIFY(f.open());
    const Scene shown = scenes().at(scene);
    shown.stage(f);
    f.view()->sync();

    QImage image(f.panel.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    f.panel.render(&image);
    for (const Mark& mark : shown.marks(f)) {
        const QPoint place = f.view()->mapTo(&f.panel, mark.place) * ratio;
        const QColor found = image.pixelColor(place);
        // Blending rounds; nothing else may differ.
        const int difference =
            std::max({std::abs(found.red() - mark.color.red()), std::abs(found.green() - mark.color.green()),
                      std::abs(found.blue() - mark.color.blue())});
        QVERIFY2(difference <= 1,
                 qPrintable(u"%1: %2, not %3"_s.arg(QLatin1String(mark.name), found.name(), mark.color.name())));
    }
}

QTEST_MAIN(PanelPictureTest)

#include "PanelPictureTest.moc"
