#include "PanelPlacement.h"

#include <QTest>

using namespace Clipboard;
using PanelPlacement::Screen;

namespace {

const Screen barOnTop{{0, 0, 1920, 1080}, {0, 32, 1920, 1048}};
const Screen barBelow{{0, 0, 1920, 1080}, {0, 0, 1920, 1040}};
const Screen toTheRight{{1920, 200, 1280, 1024}, {1920, 200, 1280, 1024}};

} // namespace

class PanelPlacementTest final : public QObject
{
    Q_OBJECT
private slots:
    void besideTrayIcon_data();
    void besideTrayIcon();
    void nearPointer_data();
    void nearPointer();
    void screenAt_data();
    void screenAt();
};

void PanelPlacementTest::besideTrayIcon_data()
{
    QTest::addColumn<QRect>("anchor");
    QTest::addColumn<QRect>("geometry");
    QTest::addColumn<QRect>("workArea");
    QTest::addColumn<QRect>("expected");

    const auto row = [](const char* name, const QRect& anchor, const Screen& screen, const QRect& expected) {
        QTest::newRow(name) << anchor << screen.geometry << screen.workArea << expected;
    };
    row("centred under the icon", {950, 4, 20, 24}, barOnTop, {650, 38, 620, 540});
    row("kept off the right side", {1890, 4, 20, 24}, barOnTop, {1292, 38, 620, 540});
    row("kept off the left side", {4, 4, 20, 24}, barOnTop, {8, 38, 620, 540});
    row("an icon that sits above the work area by more than the gap", {950, 0, 20, 10}, barOnTop, {650, 38, 620, 540});
    row("a taller icon pushes it down", {950, 0, 20, 60}, barOnTop, {650, 66, 620, 540});
    row("above a bar at the lower edge", {950, 1048, 20, 24}, barBelow, {650, 494, 620, 540});
    row("on the screen that holds the icon", {2500, 204, 20, 24}, toTheRight, {2200, 234, 620, 540});
    row("a low screen lowers the panel", {300, 0, 20, 20}, {{0, 0, 800, 480}, {0, 24, 800, 456}}, {8, 30, 620, 442});
    row("553 points of height are one too few", {300, 0, 20, 20}, {{0, 0, 800, 553}, {0, 0, 800, 553}},
        {8, 14, 620, 539});
    row("554 points of height are enough", {300, 0, 20, 20}, {{0, 0, 800, 554}, {0, 0, 800, 554}}, {8, 14, 620, 540});
    row("a narrow screen: the left side wins", {300, 0, 20, 20}, {{0, 0, 600, 800}, {0, 0, 600, 800}},
        {8, 26, 620, 540});
}

void PanelPlacementTest::besideTrayIcon()
{
    QFETCH(QRect, anchor);
    QFETCH(QRect, geometry);
    QFETCH(QRect, workArea);
    QTEST(PanelPlacement::besideTrayIcon(anchor, {geometry, workArea}), "expected");
}

void PanelPlacementTest::nearPointer_data()
{
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<QRect>("workArea");
    QTest::addColumn<QRect>("expected");

    QTest::newRow("upper edge at the pointer") << QPoint(900, 300) << barOnTop.workArea << QRect(590, 300, 620, 540);
    QTest::newRow("pointer in the top right corner") << QPoint(1919, 0) << barOnTop.workArea
                                                     << QRect(1292, 38, 620, 540);
    QTest::newRow("pointer in the bottom left corner") << QPoint(0, 1079) << barOnTop.workArea
                                                       << QRect(8, 532, 620, 540);
    QTest::newRow("on a screen that does not begin at zero")
        << QPoint(2000, 1200) << toTheRight.workArea << QRect(1928, 676, 620, 540);
}

void PanelPlacementTest::nearPointer()
{
    QFETCH(QPoint, pointer);
    QFETCH(QRect, workArea);
    QTEST(PanelPlacement::nearPointer(pointer, {workArea, workArea}), "expected");
}

void PanelPlacementTest::screenAt_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<QRect>("expected");

    QTest::newRow("on the first") << QPoint(10, 10) << barOnTop.geometry;
    QTest::newRow("on the second") << QPoint(1920, 500) << toTheRight.geometry;
    QTest::newRow("in the dead corner beside the second") << QPoint(1950, 100) << barOnTop.geometry;
    QTest::newRow("far below the second") << QPoint(2400, 3000) << toTheRight.geometry;
}

void PanelPlacementTest::screenAt()
{
    QFETCH(QPoint, point);
    QFETCH(QRect, expected);
    const auto screen = PanelPlacement::screenAt(point, {barOnTop, toTheRight});
    QVERIFY(screen);
    QCOMPARE(screen->geometry, expected);
    QVERIFY(!PanelPlacement::screenAt(point, {}));
}

QTEST_APPLESS_MAIN(PanelPlacementTest)
#include "PanelPlacementTest.moc"
