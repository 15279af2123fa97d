#pragma once

#include <QList>
#include <QPoint>
#include <QRect>

#include <optional>

/// Where the panel opens. All in logical pixels of the desktop.
namespace Clipboard::PanelPlacement {

struct Screen
{
    QRect geometry;
    QRect workArea; // without task bars and docks
};

/// The panel's rectangle beside the status item: below it when it is at the top of its screen, above it at the bottom,
/// next to it at the sides, always inside the work area. Without a status item whose place is known it opens by the
/// pointer in the same way, and when the pointer is on no screen, at the top right of the first.
[[nodiscard]] QRect panelRect(const std::optional<QRect>& statusItem, const QPoint& pointer,
                              const QList<Screen>& screens);

} // namespace Clipboard::PanelPlacement
