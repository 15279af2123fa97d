#include "CanvasViewport.h"

#include <QTest>

using namespace Clipboard;

class CanvasViewportTest final : public QObject
{
    Q_OBJECT
private slots:
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

void CanvasViewportTest::fitsThePicture()
{
    const QSizeF canvas(1120, 672);
    QCOMPARE(viewport({1600, 1000}, canvas).pictureRect(), QRectF(80, 36, 960, 600));
    QCOMPARE(viewport({1600, 1000}, canvas, 2).devicePixels(), QSize(1920, 1200));
    QCOMPARE(viewport({100, 50}, canvas).pictureRect(), QRectF(510, 311, 100, 50));
    QCOMPARE(viewport({1, 20000}, canvas).pictureRect(), QRectF(560, 36, 1, 600));
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
