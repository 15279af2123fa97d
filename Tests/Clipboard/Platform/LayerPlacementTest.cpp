#include "LayerPlacement.h"
#include "Rows.h"

#include <QTest>

#include <wlr-layer-shell-unstable-v1-client-protocol.h>

using namespace Clipboard::Wayland;

class LayerPlacementTest final : public QObject
{
    Q_OBJECT
private slots:
    void tiesToTheNearestEdges();
};

namespace {

constexpr uint32_t top = ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP;
constexpr uint32_t bottom = ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM;
constexpr uint32_t left = ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT;
constexpr uint32_t right = ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;

/// The second screen begins at 1000, 200 and is 800 × 600; of it a bar of 30 takes the upper edge away.
void checkEdges(const char* /*name*/, const QRect& frame, const LayerPlacement& placement, const QRect& beneathBar)
{
    const QRect area(1000, 200, 800, 600);
    QCOMPARE(LayerPlacement::of(frame, area), placement);
    QCOMPARE(placement.frameIn(area.size(), frame.size()).translated(area.topLeft()), frame);
    QCOMPARE(placement.frameIn({800, 570}, frame.size()), beneathBar);
}

} // namespace

void LayerPlacementTest::tiesToTheNearestEdges()
{
    checkRows(checkEdges,
              {{"top right", {1690, 206, 100, 90}, {top | right, {0, 6, 10, 0}}, {690, 6, 100, 90}},
               {"beyond the edges", {1720, 180, 100, 90}, {top | right, {0, -20, -20, 0}}, {720, -20, 100, 90}},
               {"bottom left", {1010, 700, 100, 90}, {bottom | left, {10, 0, 0, 10}}, {10, 470, 100, 90}},
               {"centred at the bottom", {1350, 700, 100, 90}, {bottom, {0, 0, 0, 10}}, {350, 470, 100, 90}},
               {"centred", {1350, 455, 100, 90}, {}, {350, 240, 100, 90}}});
}

QTEST_APPLESS_MAIN(LayerPlacementTest)
#include "LayerPlacementTest.moc"
