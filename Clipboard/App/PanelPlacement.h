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

struct Places
{
    std::optional<QRect> statusItem;
    std::optional<QPoint> pointer; // nothing when programs are not told of it
    /// The index of the screen where the user works; nothing when that is no question, as at a click on the item.
    std::optional<qsizetype> workScreen;
};

/// The panel's rectangle beside the status item: below it when it is at the top of its screen, above it at the bottom,
/// next to it at the sides, always inside the work area. Without a status item whose place is known and on a
/// screen, or with one on another screen than the user works on, it opens by the pointer in the same way, and when the
/// pointer is not there, at the top right of that screen or else of the first.
[[nodiscard]] QRect panelRect(const Places& places, const QList<Screen>& screens);

} // namespace Clipboard::PanelPlacement
