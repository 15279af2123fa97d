#include "Annotation/Annotation.h"
#include "Annotation/AnnotationMeasures.h"
#include "AnnotationFakes.h"
#include "Rows.h"

#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using Kind = Annotation::Kind;

class AnnotationTest final : public QObject
{
    Q_OBJECT
private slots:
    void hits();
    void contrasts();
    void measuresByTheLongestSide();
};

void AnnotationTest::hits()
{
    // the start is (100, 100); within 5
    checkRows(
        +[](const char*, Kind kind, QPointF end, QPointF point, bool expected) {
            QCOMPARE((Annotation{kind, {100, 100}, end, {}, {}, {}}.isHit(point, 5)), expected);
        },
        {
            {"beside an arrow", Kind::arrow, {200, 100}, {150, 105}, true},
            {"beyond its end", Kind::arrow, {200, 100}, {205, 100}, true},
            {"beyond its end, at an angle", Kind::arrow, {200, 100}, {204, 104}, false},
            {"on its line but far from its end", Kind::arrow, {200, 200}, {210, 210}, false},
            {"an arrow that is a point", Kind::arrow, {100, 100}, {103, 104}, true},
            {"inside an outline", Kind::rectangle, {200, 200}, {150, 150}, false},
            {"lower side", Kind::rectangle, {200, 200}, {150, 196}, true},
            {"right side", Kind::rectangle, {200, 200}, {195, 150}, true},
            {"upper side", Kind::rectangle, {200, 200}, {150, 95}, true},
            {"a side, drawn backwards", Kind::rectangle, {0, 0}, {50, 105}, true},
            {"inside an area, drawn backwards", Kind::highlight, {0, 20}, {50, 15}, true},
            {"inside an area", Kind::highlight, {200, 200}, {150, 150}, true},
            {"at an area's grown corner", Kind::pixelate, {200, 200}, {205, 205}, true},
            {"outside of it", Kind::pixelate, {200, 200}, {205.01, 205}, false},
            {"a counter", Kind::counter, {100, 100}, {104, 103}, true},
            {"the corner of its square", Kind::counter, {100, 100}, {105, 105}, false},
            {"a text, even on its corner", Kind::text, {100, 100}, {100, 100}, false},
        });
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

void AnnotationTest::measuresByTheLongestSide()
{
    // small stroke, large counter, medium font, its padding, block
    checkRows(
        +[](const char*, QSize picture, const QList<double>& expected) {
            const AnnotationMeasures measures(picture, std::make_shared<AnnotationFakes::BlockLayout>());
            const Annotation small{Kind::text, {}, {}, {}, AnnotationSize::small, {}};
            const Annotation medium{Kind::text, {}, {}, {}, AnnotationSize::medium, {}};
            const Annotation large{Kind::text, {}, {}, {}, AnnotationSize::large, {}};
            const QSizeF padding = measures.textPadding(medium);
            QCOMPARE(QList<double>({measures.strokeWidth(small), measures.counterDiameter(large),
                                    measures.textFont(medium).size, padding.width(), padding.height(),
                                    static_cast<double>(measures.pixelateBlockSize())}),
                     expected);
        },
        {
            {"minimum", {500, 300}, {2, 36, 20, 8, 4, 20}},
            {"proportional", {4000, 3000}, {8, 112, 68, 27, 14, 40}},
            {"upright", {3000, 4000}, {8, 112, 68, 27, 14, 40}},
            {"halves away from zero", {1250, 10}, {3, 36, 21, 8, 4, 20}},
            {"last with the smallest block", {2049, 1}, {4, 57, 35, 14, 7, 20}},
            {"first with a larger one", {2050, 1}, {4, 57, 35, 14, 7, 21}},
        });
}

QTEST_APPLESS_MAIN(AnnotationTest)
#include "AnnotationTest.moc"
