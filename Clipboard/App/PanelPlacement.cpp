#include "PanelPlacement.h"

#include <algorithm>
#include <limits>

namespace Clipboard::PanelPlacement {

namespace {

int panelHeightIn(const QRect& area)
{
    return std::min(area.height() - anchorGap - screenMargin, panelHeight);
}

/// The left side wins when the area is too narrow for both margins.
int leftFor(int middle, const QRect& area)
{
    const int rightmost = area.x() + area.width() - panelWidth - screenMargin;
    return std::max(std::min(middle - panelWidth / 2, rightmost), area.x() + screenMargin);
}

int squaredDistance(const QPoint& point, const QRect& rect)
{
    const int x = std::max({rect.left() - point.x(), 0, point.x() - rect.right()});
    const int y = std::max({rect.top() - point.y(), 0, point.y() - rect.bottom()});
    return x * x + y * y;
}

} // namespace

std::optional<Screen> screenAt(const QPoint& point, const QList<Screen>& screens)
{
    const auto nearest = std::min_element(screens.begin(), screens.end(), [&](const Screen& a, const Screen& b) {
        return squaredDistance(point, a.geometry) < squaredDistance(point, b.geometry);
    });
    if (nearest == screens.end())
        return std::nullopt;
    return *nearest;
}

QRect besideTrayIcon(const QRect& anchor, const Screen& screen)
{
    const QRect& area = screen.workArea;
    const int height = panelHeightIn(area);
    const int x = leftFor(anchor.x() + anchor.width() / 2, area);
    const int areaEnd = area.y() + area.height();

    if (anchor.center().y() > screen.geometry.center().y()) {
        const int end = std::min(areaEnd - anchorGap, anchor.y() - anchorGap);
        return {x, std::max(end - height, area.y()), panelWidth, height};
    }
    const int top = std::max(area.y() + anchorGap, anchor.y() + anchor.height() + anchorGap);
    return {x, std::min(top, areaEnd - height), panelWidth, height};
}

QRect nearPointer(const QPoint& pointer, const Screen& screen)
{
    const QRect& area = screen.workArea;
    const int height = panelHeightIn(area);
    const int lowest = area.y() + area.height() - height - screenMargin;
    const int y = std::max(std::min(pointer.y(), lowest), area.y() + anchorGap);
    return {leftFor(pointer.x(), area), y, panelWidth, height};
}

} // namespace Clipboard::PanelPlacement
