#include "CanvasViewport.h"

#include <QTest>

using namespace Clipboard;

class CanvasViewportTest final : public QObject
{
    Q_OBJECT
private slots:
    void fitsThePicture_data();
    void fitsThePicture();
    void zoomIsBounded();
    void panLeavesNoGap();
};

namespace {

CanvasViewport viewport(QSize picture, QSizeF canvas, double devicePixelRatio = 1)
{
    CanvasViewport made;
    made.setCanvas(canvas, devicePixelRatio);
    made.setPicture(picture);
    return made;
}

} // namespace

void CanvasViewportTest::fitsThePicture_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSizeF>("canvas");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QRectF>("place");
    QTest::newRow("wide") << QSize(1600, 1000) << QSizeF(1120, 672) << 1.0 << QRectF(80, 36, 960, 600);
    QTest::newRow("two pixels a point") << QSize(1600, 1000) << QSizeF(1120, 672) << 2.0 << QRectF(80, 36, 960, 600);
    QTest::newRow("small stays small") << QSize(100, 50) << QSizeF(1120, 672) << 1.0 << QRectF(510, 311, 100, 50);
    QTest::newRow("extreme") << QSize(1, 20000) << QSizeF(1120, 672) << 1.0 << QRectF(560, 36, 1, 600);
}

void CanvasViewportTest::fitsThePicture()
{
    QFETCH(const QSize, picture);
    QFETCH(const QSizeF, canvas);
    QFETCH(const double, ratio);
    QFETCH(const QRectF, place);
    const CanvasViewport view = viewport(picture, canvas, ratio);
    QCOMPARE(view.pictureRect(), place);
    QCOMPARE(view.devicePixels(), (place.size() * ratio).toSize());
}

void CanvasViewportTest::zoomIsBounded()
{
    CanvasViewport view = viewport({3840, 2160}, {1120, 672});
    const double fitted = view.scale();
    const QPointF pointer(400, 300);
    view.zoomBy(1.25, pointer);
    QVERIFY(!view.isFitted());
    view.showActualSize(pointer);
    QCOMPARE(view.scale(), 1.0);
    view.zoomBy(1e9, pointer);
    QCOMPARE(view.scale(), 16.0);
    view.zoomBy(1e-9, pointer);
    QCOMPARE(view.scale(), fitted);
    QVERIFY(view.isFitted());
}

void CanvasViewportTest::panLeavesNoGap()
{
    CanvasViewport view = viewport({3000, 500}, {1000, 800});
    view.showActualSize({500, 400});
    view.pan({1e6, 1e6}); // down there is room for all of it: it stays in the middle
    QCOMPARE(view.pictureRect(), QRectF(36, 150, 3000, 500));
    view.pan({-1e6, -1e6});
    QCOMPARE(view.pictureRect(), QRectF(1000 - 36 - 3000, 150, 3000, 500));
    view.setCanvas({1200, 800}, 1);
    QCOMPARE(view.pictureRect().right(), 1200.0 - 36);
    view.fit();
    view.setCanvas({600, 800}, 1);
    QCOMPARE(view.pictureRect().width(), 600.0 - 72);
}

QTEST_APPLESS_MAIN(CanvasViewportTest)
#include "CanvasViewportTest.moc"
