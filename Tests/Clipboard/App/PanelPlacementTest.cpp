#include "PanelPlacement.h"

#include <QTest>

using namespace Clipboard;
using PanelPlacement::Screen;

class PanelPlacementTest final : public QObject
{
    Q_OBJECT
private slots:
    void placesThePanel_data();
    void placesThePanel();
};

void PanelPlacementTest::placesThePanel_data()
{
    using Item = std::optional<QRect>;
    QTest::addColumn<Item>("item");
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<QList<Screen>>("screens");
    QTest::addColumn<QRect>("panel");
    QTest::addColumn<int>("workScreen"); // -1: no matter

    const QPoint nowhere(-9999, -9999);
    const QList<Screen> topBar{{{0, 0, 1920, 1080}, {0, 24, 1920, 1056}}};
    const QList<Screen> bottomBar{{{0, 0, 1920, 1080}, {0, 0, 1920, 1040}}};
    const QList<Screen> leftBar{{{0, 0, 1920, 1080}, {48, 0, 1872, 1080}}};
    const QList<Screen> rightBar{{{0, 0, 1920, 1080}, {0, 0, 1872, 1080}}};
    const QList<Screen> noBar{{{0, 0, 1920, 1080}, {0, 0, 1920, 1080}}};
    const QList<Screen> low{{{0, 0, 1024, 560}, {0, 24, 1024, 536}}};
    const QList<Screen> narrow{{{0, 0, 600, 800}, {0, 24, 600, 776}}};
    const QList<Screen> two{{{0, 0, 1920, 1080}, {0, 24, 1920, 1056}},
                            {{1920, -200, 1280, 1024}, {1920, -200, 1280, 1024}}};

    QTest::newRow("below a centred item")
        << Item({950, 0, 20, 24}) << nowhere << topBar << QRect(650, 30, 620, 540) << -1;
    QTest::newRow("right edge kept") << Item({1890, 0, 24, 24}) << nowhere << topBar << QRect(1292, 30, 620, 540) << -1;
    QTest::newRow("left edge kept") << Item({4, 0, 24, 24}) << nowhere << topBar << QRect(8, 30, 620, 540) << -1;
    QTest::newRow("low work area") << Item({500, 0, 20, 24}) << nowhere << low << QRect(200, 30, 620, 522) << -1;
    QTest::newRow("narrow: the left edge wins")
        << Item({300, 0, 20, 24}) << nowhere << narrow << QRect(8, 30, 620, 540) << -1;
    QTest::newRow("above a bottom bar") << Item({1800, 1045, 24, 24}) << nowhere << bottomBar
                                        << QRect(1292, 494, 620, 540) << -1;
    QTest::newRow("beside a left bar") << Item({4, 500, 24, 24}) << nowhere << leftBar << QRect(56, 242, 620, 540)
                                       << -1;
    QTest::newRow("beside a left bar, low down")
        << Item({4, 1050, 24, 24}) << nowhere << leftBar << QRect(56, 532, 620, 540) << -1;
    QTest::newRow("beside a right bar, high up")
        << Item({1890, 4, 24, 24}) << nowhere << rightBar << QRect(1244, 6, 620, 540) << -1;
    QTest::newRow("a bar that reserves nothing")
        << Item({950, 1050, 24, 24}) << nowhere << noBar << QRect(652, 504, 620, 540) << -1;
    QTest::newRow("on the screen of the item")
        << Item({2500, -200, 24, 24}) << QPoint(10, 10) << two << QRect(2202, -170, 620, 540) << -1;
    QTest::newRow("on the screen of the work, by the pointer")
        << Item({2500, -200, 24, 24}) << QPoint(900, 300) << two << QRect(590, 306, 620, 540) << 0;
    QTest::newRow("on the screen of the work, the pointer elsewhere")
        << Item({950, 0, 20, 24}) << QPoint(900, 300) << two << QRect(2572, -194, 620, 540) << 1;
    QTest::newRow("item between screens")
        << Item({3300, 5000, 24, 24}) << nowhere << two << QRect(2572, 278, 620, 540) << -1;

    QTest::newRow("unknown item: below the pointer")
        << Item() << QPoint(900, 300) << topBar << QRect(590, 306, 620, 540) << -1;
    QTest::newRow("unknown: above the pointer")
        << Item() << QPoint(900, 900) << topBar << QRect(590, 354, 620, 540) << -1;
    QTest::newRow("unknown: in a corner")
        << Item() << QPoint(1919, 1079) << bottomBar << QRect(1292, 492, 620, 540) << -1;
    QTest::newRow("unknown: no room on either side")
        << Item() << QPoint(600, 300) << low << QRect(290, 30, 620, 522) << -1;
    QTest::newRow("unknown: the pointer's screen")
        << Item() << QPoint(2000, 0) << two << QRect(1928, 6, 620, 540) << -1;
    QTest::newRow("unknown: pointer nowhere") << Item() << nowhere << two << QRect(1292, 30, 620, 540) << -1;
    QTest::newRow("no screen") << Item() << QPoint(0, 0) << QList<Screen>() << QRect(0, 0, 620, 540) << -1;
}

void PanelPlacementTest::placesThePanel()
{
    QFETCH(std::optional<QRect>, item);
    QFETCH(QPoint, pointer);
    QFETCH(QList<Screen>, screens);
    QFETCH(QRect, panel);
    QFETCH(int, workScreen);
    const auto work = workScreen < 0 ? std::nullopt : std::optional<qsizetype>(workScreen);
    QCOMPARE(PanelPlacement::panelRect({item, pointer, work}, screens), panel);
}

QTEST_APPLESS_MAIN(PanelPlacementTest)
#include "PanelPlacementTest.moc"
