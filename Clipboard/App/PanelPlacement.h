#pragma once

#include <QList>
#include <QPoint>
#include <QRect>

#include <optional>

/// Where the panel goes. Logical pixels throughout; all rectangles in the coordinates of the virtual desktop.
namespace Clipboard::PanelPlacement {

struct Screen
{
    QRect geometry;
    QRect workArea; // without task bars
};

inline constexpr int panelWidth = 620;
inline constexpr int panelHeight = 540;
/// Between the tray icon and the panel, and between the panel and a side of the screen.
inline constexpr int anchorGap = 6;
inline constexpr int screenMargin = 8;

/// The screen that holds `point`, else the nearest one; nothing when there is no screen.
[[nodiscard]] std::optional<Screen> screenAt(const QPoint& point, const QList<Screen>& screens);

/// The panel's rectangle beside a tray icon at `anchor`: below it, or above it when it sits in a bar at the lower half
/// of the screen; centred on it, but kept off the sides of the work area. A work area that is too low for the whole
/// panel makes it lower; one too narrow lets it stand out on the right.
[[nodiscard]] QRect besideTrayIcon(const QRect& anchor, const Screen& screen);

/// The panel's rectangle when nobody tells where the tray icon is: with its upper edge at the pointer, centred on it,
/// wholly inside the work area of the pointer's screen.
[[nodiscard]] QRect nearPointer(const QPoint& pointer, const Screen& screen);

} // namespace Clipboard::PanelPlacement
