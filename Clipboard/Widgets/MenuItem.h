#pragma once

class QAction;
class QPainter;
class QRectF;

/// How an item of a menu looks, whatever window the menu is.
namespace Clipboard::MenuItem {

inline constexpr int menuWidth = 232;
inline constexpr int menuPadding = 6;

[[nodiscard]] int height(bool isSeparator);
/// Text, shortcut, check mark, and the drawing that the action's data names, as a warning. A separator is a line.
void paint(QPainter& painter, const QRectF& item, const QAction& action, bool highlighted);

} // namespace Clipboard::MenuItem
