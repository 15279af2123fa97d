#include "Annotation/Annotation.h"
#include "Annotation/AnnotationMeasures.h"
#include "AnnotationFakes.h"

#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using Kind = Annotation::Kind;

Q_DECLARE_METATYPE(Kind)

class AnnotationTest final : public QObject
{
    Q_OBJECT
private slots:
    void hits_data();
    void hits();
    void contrasts();
    void measuresByTheLongestSide_data();
    void measuresByTheLongestSide();
};

void AnnotationTest::hits_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QPointF>("end"); // the start is (100, 100)
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<bool>("expected"); // within 5

    const auto row = [](const char* name, Kind kind, QPointF end, QPointF point, bool expected) {
        QTest::newRow(name) << kind << end << point << expected;
    };
    row("beside an arrow", Kind::arrow, {200, 100}, {150, 105}, true);
    row("beyond its end", Kind::arrow, {200, 100}, {205, 100}, true);
    row("beyond its end, at an angle", Kind::arrow, {200, 100}, {204, 104}, false);
    row("on its line but far from its end", Kind::arrow, {200, 200}, {210, 210}, false);
    row("an arrow that is a point", Kind::arrow, {100, 100}, {103, 104}, true);
    row("inside an outline", Kind::rectangle, {200, 200}, {150, 150}, false);
    row("lower side", Kind::rectangle, {200, 200}, {150, 196}, true);
    row("right side", Kind::rectangle, {200, 200}, {195, 150}, true);
    row("upper side", Kind::rectangle, {200, 200}, {150, 95}, true);
    row("a side, drawn backwards", Kind::rectangle, {0, 0}, {50, 105}, true);
    row("inside an area, drawn backwards", Kind::highlight, {0, 20}, {50, 15}, true);
    row("inside an area", Kind::highlight, {200, 200}, {150, 150}, true);
    row("at an area's grown corner", Kind::pixelate, {200, 200}, {205, 205}, true);
    row("outside of it", Kind::pixelate, {200, 200}, {205.01, 205}, false);
    row("a counter", Kind::counter, {100, 100}, {104, 103}, true);
    row("the corner of its square", Kind::counter, {100, 100}, {105, 105}, false);
    row("a text, even on its corner", Kind::text, {100, 100}, {100, 100}, false);
}

void AnnotationTest::hits()
{
    QFETCH(Kind, kind);
    QFETCH(QPointF, end);
    QFETCH(QPointF, point);
    QFETCH(bool, expected);
    QCOMPARE((Annotation{kind, {100, 100}, end, {}, {}, {}}.isHit(point, 5)), expected);
}

void AnnotationTest::contrasts()
{
    QStringList dark;
    for (const AnnotationColor& color : AnnotationPalette::colors) {
        if (color.contrasting() == AnnotationPalette::black)
            dark += color.id;
    }
    QCOMPARE(dark, QStringList({u"yellow"_s, u"green"_s, u"white"_s}));
    // A luminance of 0.6 is not yet light; the next number is.
    const AnnotationColor grey{"grey"_L1, 0.6, 0.6, 0.6};
    QCOMPARE(grey.contrasting(), AnnotationPalette::white);
    QCOMPARE((AnnotationColor{"grey"_L1, 0.6, 0.6 + 1e-9, 0.6}.contrasting()), AnnotationPalette::black);
}

void AnnotationTest::measuresByTheLongestSide_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QList<double>>("expected"); // small stroke, large counter, medium font, its padding, block

    QTest::newRow("minimum") << QSize(500, 300) << QList<double>{2, 36, 20, 8, 4, 20};
    QTest::newRow("proportional") << QSize(4000, 3000) << QList<double>{8, 112, 68, 27, 14, 40};
    QTest::newRow("upright") << QSize(3000, 4000) << QList<double>{8, 112, 68, 27, 14, 40};
    QTest::newRow("halves away from zero") << QSize(1250, 10) << QList<double>{3, 36, 21, 8, 4, 20};
    QTest::newRow("last with the smallest block") << QSize(2049, 1) << QList<double>{4, 57, 35, 14, 7, 20};
    QTest::newRow("first with a larger one") << QSize(2050, 1) << QList<double>{4, 57, 35, 14, 7, 21};
}

void AnnotationTest::measuresByTheLongestSide()
{
    QFETCH(QSize, picture);
    QFETCH(QList<double>, expected);
    const AnnotationMeasures measures(picture, std::make_shared<AnnotationFakes::BlockLayout>());
    Annotation mark{Kind::text, {}, {}, {}, AnnotationSize::medium, {}};
    const QSizeF padding = measures.textPadding(mark);
    const double font = measures.textFont(mark).size;
    mark.size = AnnotationSize::small;
    const double stroke = measures.strokeWidth(mark);
    mark.size = AnnotationSize::large;
    QCOMPARE(QList<double>({stroke, measures.counterDiameter(mark), font, padding.width(), padding.height(),
                            static_cast<double>(measures.pixelateBlockSize())}),
             expected);
}

QTEST_APPLESS_MAIN(AnnotationTest)
#include "AnnotationTest.moc"
