#include "DarkMenu.h"
#include "EmptyContent.h"
#include "Fonts.h"
#include "KeyCap.h"
#include "OverlayScrollBar.h"
#include "Painting.h"
#include "Shadow.h"
#include "Theme.h"
#include "TintedIcon.h"
#include "Translations.h"

#include <QApplication>
#include <QPainter>
#include <QScrollBar>
#include <QTest>
#include <QTextLayout>

using namespace Clipboard;
using namespace Qt::StringLiterals;

class DrawingTest final : public QObject
{
    Q_OBJECT
private slots:
    void iconsTakeTheirColor_data();
    void iconsTakeTheirColor();
    void unknownIconIsNull();
    void typesHaveDrawings();
    void ringLeavesGroundBetween();
    void textIsElidedToItsLine();
    void textReadsInItsOwnDirection();
    void keyCapsGrowWithTheirKeys();
    void shadowFadesOutInsideItsMargin();
    void codeHasNoLigatures();
    void menuHasItsOwnMeasures();
    void scrollBarShowsOnlyWhenThereIsMore();
    void wordingFitsThePlatform_data();
    void wordingFitsThePlatform();
};

namespace {

QImage canvas(const QSize& size, const QColor& ground = Theme::panel)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(ground);
    return image;
}

bool contains(const QImage& image, const QColor& color)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == color)
                return true;
        }
    }
    return false;
}

} // namespace

void DrawingTest::iconsTakeTheirColor_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<qreal>("ratio");
    for (const QString& name : {u"clear"_s, u"checkfill"_s, u"pinfill"_s, u"layers"_s, u"trash"_s}) {
        for (const qreal ratio : {1.0, 1.5, 2.0})
            QTest::newRow(qPrintable(u"%1 at %2"_s.arg(name).arg(ratio))) << name << ratio;
    }
}

void DrawingTest::iconsTakeTheirColor()
{
    QFETCH(QString, name);
    QFETCH(qreal, ratio);
    const QByteArray latin = name.toLatin1();
    const QPixmap pixmap = tintedPixmap({QLatin1String(latin), 24, Theme::accent, 4}, ratio);
    QCOMPARE(pixmap.deviceIndependentSize(), QSizeF(24, 24));
    QCOMPARE(pixmap.size(), QSize(qRound(24 * ratio), qRound(24 * ratio)));
    QVERIFY(contains(pixmap.toImage(), Theme::accent));
}

void DrawingTest::unknownIconIsNull()
{
    QVERIFY(tintedPixmap({QLatin1String("no-such-drawing")}, 1).isNull());
}

void DrawingTest::typesHaveDrawings()
{
    for (const auto type : ClipboardCore::allClipTypes)
        QVERIFY2(!tintedPixmap({Theme::typeIcon(type)}, 1).isNull(), rawValue(type).data());
}

void DrawingTest::ringLeavesGroundBetween()
{
    QImage image = canvas({60, 40});
    QPainter painter(&image);
    const QRectF control(10, 10, 40, 20);
    Painting::roundedFill(painter, control, 7, Theme::control, Theme::controlLine);
    Painting::focusRing(painter, control, 7);
    painter.end();
    const auto column = [&](int y) { return image.pixelColor(30, y); };
    QCOMPARE(column(6), QColor(Theme::panel));
    QCOMPARE(column(7), QColor(Theme::accent));
    QCOMPARE(column(8), QColor(Theme::accent));
    QCOMPARE(column(9), QColor(Theme::panel));
    QCOMPARE(column(10), QColor(Theme::controlLine));
    QCOMPARE(column(11), QColor(Theme::control));
}

void DrawingTest::textIsElidedToItsLine()
{
    QImage image = canvas({200, 20});
    QPainter painter(&image);
    Painting::textLine(painter, {0, 0, 100, 20}, Fonts::body, Theme::text,
                       u"much too long for the line it is put on"_s);
    painter.end();
    QVERIFY(image.copy(0, 0, 100, 20) != canvas({100, 20}));
    QCOMPARE(image.copy(101, 0, 99, 20), canvas({99, 20}));
}

void DrawingTest::textReadsInItsOwnDirection()
{
    const auto drawn = [](const QString& text) {
        QImage image = canvas({200, 20});
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

void DrawingTest::keyCapsGrowWithTheirKeys()
{
    QCOMPARE(KeyCap::size(u"⏎"_s), QSizeF(18, 18));
    QCOMPARE(KeyCap::size(u"↑↓"_s), QSizeF(33, 18));
    QCOMPARE(KeyCap::size(u"i"_s), QSizeF(18, 18));
    QCOMPARE(KeyCap::size(u"Ctrl+K"_s).width(), Fonts::width(Fonts::badge, u"Ctrl+K"_s) + 10);
    QCOMPARE(KeyCap::size({}).width(), 0.0);
}

void DrawingTest::shadowFadesOutInsideItsMargin()
{
    const QSize card(200, 100);
    const QMargins margins = panelShadow.margins();
    QImage image = canvas(card.grownBy(margins), Qt::transparent);
    QPainter painter(&image);
    panelShadow.paint(painter, QRect(QPoint(margins.left(), margins.top()), card));
    painter.end();
    const int middle = image.width() / 2;
    for (int x = 0; x < image.width(); ++x) {
        QVERIFY(image.pixelColor(x, 0).alpha() <= 6);
        QVERIFY(image.pixelColor(x, image.height() - 1).alpha() <= 6);
    }
    const int below = image.pixelColor(middle, margins.top() + card.height() + 4).alpha();
    const int above = image.pixelColor(middle, margins.top() - 4).alpha();
    QVERIFY2(below > above && below > 60, qPrintable(u"%1 %2"_s.arg(below).arg(above)));
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
    QCOMPARE(glyphs(u"e\u0301"_s), glyphs(u"é"_s)); // but what belongs together is put together
}

void DrawingTest::menuHasItsOwnMeasures()
{
    DarkMenu menu(true);
    QAction* first = menu.addAction(u"Clear History…"_s);
    QAction* separator = menu.addSeparator();
    QAction* last = menu.addAction(u"Quit Tessaly"_s);
    last->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    menu.popup(QPoint(0, 0));
    QCOMPARE(menu.width(), 232);
    QCOMPARE(menu.height(), 6 + 30 + 13 + 30 + 6);
    QCOMPARE(menu.actionGeometry(first).top(), 6);
    QCOMPARE(menu.actionGeometry(last).top(), 6 + 30 + 13);
    menu.setActiveAction(last);
    const QImage image = menu.grab().toImage();
    QCOMPARE(image.pixelColor(20, menu.actionGeometry(separator).top() + 6), QColor(Theme::seam));
    QCOMPARE(image.pixelColor(20, menu.actionGeometry(last).top() + 15), QColor(Theme::rowSel));
    QCOMPARE(image.pixelColor(20, menu.actionGeometry(first).top() + 15), QColor(Theme::raised));
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

void DrawingTest::wordingFitsThePlatform_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("source");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("shown");
    QTest::newRow("command key") << u"Clipboard::PanelFooter"_s << u"⌘K"_s << -1 << u"Ctrl+K"_s;
    QTest::newRow("number keys") << u"Clipboard::CommandCard"_s << u"⌘1–9"_s << -1 << u"Ctrl+1–9"_s;
    QTest::newRow("no item") << u"Clipboard::PanelFooter"_s << u"%n item"_s << 0 << u"0 items"_s;
    QTest::newRow("one item") << u"Clipboard::PanelFooter"_s << u"%n item"_s << 1 << u"1 item"_s;
    QTest::newRow("items") << u"Clipboard::PanelFooter"_s << u"%n item"_s << 128 << u"128 items"_s;
    QTest::newRow("one on a chip") << u"Clipboard::FilterChip"_s << u"%n items"_s << 1 << u"1 item"_s;
}

void DrawingTest::wordingFitsThePlatform()
{
    QFETCH(QString, context);
    QFETCH(QString, source);
    QFETCH(int, count);
    QFETCH(QString, shown);
    static const bool installed = (installTranslations(*qApp), true);
    QVERIFY(installed);
    const QByteArray name = context.toUtf8();
    const QByteArray text = source.toUtf8();
    QCOMPARE(QCoreApplication::translate(name.constData(), text.constData(), nullptr, count), shown);
}

QTEST_MAIN(DrawingTest)

#include "DrawingTest.moc"
