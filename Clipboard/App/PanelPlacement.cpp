#include "PanelPlacement.h"

#include <algorithm>

namespace Clipboard {

using PanelPlacement::Screen;

namespace {

constexpr int panelWidth = 620;
constexpr int panelHeight = 540;
constexpr int gap = 6;    // between the panel and the bar or item it hangs from
constexpr int margin = 8; // to the other edges of the work area

// QRect::right() and bottom() are one less than the edge.
int rightEdge(const QRect& rect)
{
    return rect.x() + rect.width();
}

int bottomEdge(const QRect& rect)
{
    return rect.y() + rect.height();
}

int distance(const QRect& rect, const QPoint& point)
{
    const int x = std::clamp(point.x(), rect.left(), rect.right());
    const int y = std::clamp(point.y(), rect.top(), rect.bottom());
    return (QPoint(x, y) - point).manhattanLength();
}

/// The index of the screen that holds the point, or else of the nearest.
qsizetype screenAt(const QPoint& point, const QList<Screen>& screens)
{
    const auto toPoint = [&point](const Screen& screen) { return distance(screen.geometry, point); };
    return std::ranges::min_element(screens, {}, toPoint) - screens.begin();
}

bool isOnAny(const QList<Screen>& screens, const QPoint& point)
{
    return std::ranges::any_of(screens, [&point](const Screen& screen) { return screen.geometry.contains(point); });
}

enum class Edge { top, bottom, left, right };

/// The edge of the screen that the item is nearest to: the bar it sits in, when a bar is there.
Edge edgeOf(const QRect& item, const QRect& area)
{
    const QPoint center = item.center();
    if (center.y() < area.top())
        return Edge::top;
    if (center.y() > area.bottom())
        return Edge::bottom;
    if (center.x() < area.left())
        return Edge::left;
    if (center.x() > area.right())
        return Edge::right;
    return center.y() <= area.center().y() ? Edge::top : Edge::bottom;
}

/// Inside the work area; the left edge wins when the area is too narrow for both.
int fittedX(int x, const QRect& area)
{
    return std::max(std::min(x, rightEdge(area) - panelWidth - margin), area.x() + margin);
}

int fittedY(int y, int height, const QRect& area)
{
    return std::max(std::min(y, bottomEdge(area) - height - margin), area.y() + gap);
}

int topBelow(const QRect& item, int height, const QRect& area)
{
    const int y = std::max(area.y(), bottomEdge(item)) + gap;
    return y + height > bottomEdge(area) ? bottomEdge(area) - height : y;
}

int topAbove(const QRect& item, int height, const QRect& area)
{
    const int bottom = std::min(bottomEdge(area), item.y()) - gap;
    return std::max(bottom - height, area.y());
}

QRect beside(const QRect& item, const QRect& area)
{
    const int height = std::min(area.height() - gap - margin, panelHeight);
    const int centeredX = item.x() + item.width() / 2 - panelWidth / 2;
    const int centeredY = item.y() + item.height() / 2 - height / 2;
    QPoint topLeft;
    switch (edgeOf(item, area)) {
    case Edge::top:
        topLeft = {fittedX(centeredX, area), topBelow(item, height, area)};
        break;
    case Edge::bottom:
        topLeft = {fittedX(centeredX, area), topAbove(item, height, area)};
        break;
    case Edge::left:
        topLeft = {fittedX(area.x() + margin, area), fittedY(centeredY, height, area)};
        break;
    case Edge::right:
        topLeft = {fittedX(rightEdge(area) - panelWidth - margin, area), fittedY(centeredY, height, area)};
        break;
    }
    return {topLeft, QSize(panelWidth, height)};
}

/// Nothing hangs here: below the pointer or above it where there is room, else as near as the work area allows.
QRect byPointer(const QPoint& pointer, const QRect& area)
{
    const int height = std::min(area.height() - gap - margin, panelHeight);
    int y = pointer.y() + gap;
    if (y != fittedY(y, height, area))
        y = pointer.y() - gap - height;
    return {fittedX(pointer.x() - panelWidth / 2, area), fittedY(y, height, area), panelWidth, height};
}

} // namespace

QRect PanelPlacement::panelRect(const Places& places, const QList<Screen>& screens)
{
    if (screens.isEmpty())
        return {0, 0, panelWidth, panelHeight};
    // Some bars say nothing of their place, and their items then seem to be where nobody could see them.
    if (places.statusItem && isOnAny(screens, places.statusItem->center())) {
        const qsizetype screen = screenAt(places.statusItem->center(), screens);
        if (places.workScreen.value_or(screen) == screen)
            return beside(*places.statusItem, screens.at(screen).workArea);
    }
    const qsizetype first = 0;
    const qsizetype atPointer = places.pointer ? screenAt(*places.pointer, screens) : first;
    const Screen& screen = screens.at(places.workScreen.value_or(atPointer));
    if (places.pointer && screen.geometry.contains(*places.pointer))
        return byPointer(*places.pointer, screen.workArea);
    const QRect& area = screens.at(places.workScreen.value_or(first)).workArea;
    return byPointer({rightEdge(area), area.y()}, area);
}

} // namespace Clipboard
