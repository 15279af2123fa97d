#include "PanelPlacement.h"
#include "Rows.h"

#include <QTest>

using namespace Clipboard;
using PanelPlacement::Screen;

class PanelPlacementTest final : public QObject
{
    Q_OBJECT
private slots:
    void placesThePanel();
};

namespace {

void checkPlace(const char* /*name*/, const PanelPlacement::Places& places, const QList<Screen>& screens,
                const QRect& panel)
{
    QCOMPARE(PanelPlacement::panelRect(places, screens), panel);
}

} // namespace

void PanelPlacementTest::placesThePanel()
{
    const QPoint nowhere(-9999, -9999);
    const QList<Screen> topBar{{{0, 0, 1920, 1080}, {0, 24, 1920, 1056}}};
    const QList<Screen> bottomBar{{{0, 0, 1920, 1080}, {0, 0, 1920, 1040}}};
    const QList<Screen> leftBar{{{0, 0, 1920, 1080}, {48, 0, 1872, 1080}}};
    const QList<Screen> rightBar{{{0, 0, 1920, 1080}, {0, 0, 1872, 1080}}};
    const QList<Screen> noBar{{{0, 0, 1920, 1080}, {0, 0, 1920, 1080}}};
    const QList<Screen> low{{{0, 0, 1024, 560}, {0, 24, 1024, 536}}};
    const QList<Screen> narrow{{{0, 0, 600, 800}, {0, 24, 600, 776}}};
    const QList<Screen> two{topBar.first(), {{1920, -200, 1280, 1024}, {1920, -200, 1280, 1024}}};
    const QRect onSecond(2500, -200, 24, 24);
    checkRows(checkPlace,
              {{"below a centred item", {QRect(950, 0, 20, 24), nowhere, {}}, topBar, {650, 30, 620, 540}},
               {"right edge kept", {QRect(1890, 0, 24, 24), nowhere, {}}, topBar, {1292, 30, 620, 540}},
               {"low work area", {QRect(500, 0, 20, 24), nowhere, {}}, low, {200, 30, 620, 522}},
               {"narrow: the left edge wins", {QRect(300, 0, 20, 24), nowhere, {}}, narrow, {8, 30, 620, 540}},
               {"above a bottom bar", {QRect(1800, 1045, 24, 24), nowhere, {}}, bottomBar, {1292, 494, 620, 540}},
               {"beside a left bar, low down", {QRect(4, 1050, 24, 24), nowhere, {}}, leftBar, {56, 532, 620, 540}},
               {"beside a right bar, high up", {QRect(1890, 4, 24, 24), nowhere, {}}, rightBar, {1244, 6, 620, 540}},
               {"a bar that reserves nothing", {QRect(950, 1050, 24, 24), nowhere, {}}, noBar, {652, 504, 620, 540}},
               {"on the screen of the item", {onSecond, QPoint(10, 10), {}}, two, {2202, -170, 620, 540}},
               {"where the work is, by the pointer", {onSecond, QPoint(900, 300), 0}, two, {590, 306, 620, 540}},
               {"where the work is", {QRect(950, 0, 20, 24), QPoint(900, 300), 1}, two, {2572, -194, 620, 540}},
               {"item off every screen", {QRect(3300, 5000, 24, 24), QPoint(900, 300), {}}, two, {590, 306, 620, 540}},
               {"unknown item: below the pointer", {{}, QPoint(900, 300), {}}, topBar, {590, 306, 620, 540}},
               {"unknown: no room on either side", {{}, QPoint(600, 300), {}}, low, {290, 30, 620, 522}},
               {"unknown: pointer nowhere", {{}, nowhere, {}}, two, {1292, 30, 620, 540}},
               {"nobody tells of the pointer", {{}, {}, 1}, two, {2572, -194, 620, 540}},
               {"no screen", {{}, QPoint(0, 0), {}}, {}, {0, 0, 620, 540}}});
}

QTEST_APPLESS_MAIN(PanelPlacementTest)
#include "PanelPlacementTest.moc"
