#include "Fonts.h"
#include "HoverTip.h"
#include "OverlayScrollBar.h"
#include "Painting.h"
#include "SmallShapes.h"
#include "Theme.h"
#include "TintedIcon.h"

#include <QPainter>
#include <QScrollBar>
#include <QTest>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

using namespace Clipboard;
using namespace Qt::StringLiterals;

class DrawingTest final : public QObject
{
    Q_OBJECT
private slots:
    void paletteIsReadable();
    void textReadsInItsOwnDirection();
    void codeHasNoLigatures();
    void keepsShapesToTheLastBit();
    void keepsIconsBeyondTheirNames();
    void tipStandsBesideItsControl();
    void scrollBarShowsOnlyWhenThereIsMore();
};

namespace {

/// As WCAG 2.1 defines it.
double contrast(const QColor& a, const QColor& b)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    const auto luminance = [linear](const QColor& color) {
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

void DrawingTest::paletteIsReadable()
{
    using namespace Theme;
    QList<QColor> inks{text, text2};
    for (const auto type : ClipboardCore::allClipTypes)
        inks.append(readableTint(type));
    const QList<std::pair<QList<QColor>, QList<QColor>>> palette{
        {{panel, rowHover, rowSel, rowIdle, control}, inks},
        {{panel, pane, well, raised, rowHover, faint}, {text3}},
        {{controlHover, controlPress, raised, pane}, {text, text2}},
        {{kbdSel, tip, rowSelLine}, {text}},
        {{rowSel}, {accentSoft}},
        {{tipCap}, {tipCapText}},
        {{accent, accentHover, accentPress}, {onAccent}},
        {{dangerFill, dangerFillHover, dangerCap}, {onDanger}}};
    for (const auto& [grounds, colors] : palette) {
        for (const QColor& ground : grounds) {
            for (const QColor& color : colors)
                QVERIFY2(contrast(color, ground) >= 4.5, qPrintable(color.name() + u' ' + ground.name()));
        }
    }
}

void DrawingTest::textReadsInItsOwnDirection()
{
    const auto drawn = [](const QString& text) {
        QImage image(200, 20, QImage::Format_ARGB32_Premultiplied);
        image.fill(Theme::panel);
        QPainter painter(&image);
        painter.setLayoutDirection(Qt::LeftToRight); // as a window's is
        Painting::textLine(painter, {0, 0, 200, 20}, Fonts::body, Theme::text, text);
        painter.end();
        return image;
    };
    // A mark that makes what surrounds it read from right to left changes nothing in a text that does.
    QCOMPARE(drawn(u"שלום!"_s), drawn(u"שלום!\u200F"_s));
    QVERIFY(drawn(u"hello!"_s) != drawn(u"\u202Bhello!"_s));
}

void DrawingTest::codeHasNoLigatures()
{
    const auto glyphs = [](const QString& text) {
        QTextLayout layout(text, Fonts::font(Fonts::code, text));
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        return layout.glyphRuns().constFirst().glyphIndexes();
    };
    QCOMPARE(glyphs(u"->"_s), glyphs(u"-"_s) + glyphs(u">"_s));
    QCOMPARE(glyphs(u"->…"_s).first(2), glyphs(u"->"_s)); // which was cut
    QCOMPARE(glyphs(u"e\u0301"_s), glyphs(u"é"_s));       // but what belongs together is put together
}

void DrawingTest::keepsShapesToTheLastBit()
{
    const auto drawn = [](qreal ratio, const QRectF& rect, qreal radius, const QColor& color, bool isKept) {
        QImage image(QSize(120, 60) * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Theme::rowSel);
        QPainter painter(&image);
        if (isKept && SmallShapes::paint(painter, rect, radius, color, SmallShapes::Part::inside) &&
            SmallShapes::paint(painter, rect, radius, color, SmallShapes::Part::line))
            return image;
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawRoundedRect(rect, radius, radius);
        painter.setPen(color);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
        return isKept ? QImage() : image;
    };
    for (const qreal ratio : {1.5, 2.0}) {
        for (const QColor& color : {QColor(Theme::accent), QColor(255, 90, 7, 31)}) {
            const std::pair<QRectF, qreal> shapes[] = {
                {{8, 8, 28, 28}, 7}, {{40, 20, 74, 26}, 7}, {{2, 30, 90, 26}, 7}, {{40, 20, 72, 26}, 13}};
            for (const auto& [rect, radius] : shapes) {
                for (int i = 0; i < 2; ++i) // made, then kept
                    QCOMPARE(drawn(ratio, rect, radius, color, true), drawn(ratio, rect, radius, color, false));
            }
            QVERIFY(drawn(ratio, {8.2, 8, 28, 28}, 7, color, true).isNull()); // not on whole pixels
        }
    }
}

void DrawingTest::keepsIconsBeyondTheirNames()
{
    QByteArray name = "pin";
    const auto icon = [&name](int size) { return TintedIcon{QLatin1String(name), size}; };
    const QImage first = tintedPixmap(icon(16), 1).toImage();
    name[1] = 'e';
    for (int size = 1; size < 200; ++size) // more than are kept
        QVERIFY(size == 16 || tintedPixmap(icon(size), 1).isNull());
    QVERIFY(tintedPixmap(icon(16), 1).isNull() && !first.isNull());
}

void DrawingTest::tipStandsBesideItsControl()
{
    QWidget window;
    window.resize(400, 200);
    window.setContentsMargins(0, 2, 0, 0); // a shadow's
    for (const QRect control :
         {QRect(180, 100, 40, 20), QRect(180, 33, 40, 20), QRect(0, 100, 10, 20), QRect(390, 100, 10, 20)}) {
        const HoverTip tip(u"Delete"_s, u"⌫"_s, control, &window);
        const QRect place = tip.geometry();
        const bool isAbove = control.top() > 33; // else there is no room
        QCOMPARE(isAbove ? control.top() - place.bottom() - 1 : place.top() - control.bottom() - 1, 6);
        QVERIFY(place.left() >= 8 && place.right() < 400 - 8);
        // As near to the middle of the control as the edges allow.
        const bool atEdge = place.left() == 8 || place.right() + 1 == 400 - 8;
        QVERIFY(atEdge || std::abs(place.center().x() - control.center().x()) <= 1);
    }
}

void DrawingTest::scrollBarShowsOnlyWhenThereIsMore()
{
    QWidget window;
    QScrollBar source;
    OverlayScrollBar bar(&source, &window);
    bar.setGeometry(0, 0, 10, 100);
    source.setRange(0, 0);
    QVERIFY(bar.isHidden());
    source.setPageStep(100);
    source.setRange(0, 100);
    QVERIFY(!bar.isHidden());
    QCOMPARE(bar.thumb(), QRectF(6, 0, 4, 50));
    source.setValue(100);
    QCOMPARE(bar.thumb(), QRectF(6, 50, 4, 50));
    QTest::mousePress(&bar, Qt::LeftButton, {}, {7, 60});
    QTest::mouseMove(&bar, {7, 35});
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, {7, 35});
    QCOMPARE(source.value(), 50);
}

QTEST_MAIN(DrawingTest)

#include "DrawingTest.moc"
