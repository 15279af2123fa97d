#pragma once

#include <QMenu>

namespace Clipboard {

/// A menu drawn in the program's own style, whatever style the desktop has. Separators, check marks and the texts of
/// shortcuts are drawn, and the drawing that an action's data names, as a warning; submenus are not supported.
class DarkMenu final : public QMenu
{
    Q_OBJECT
public:
    /// `composited`: see WindowSystem::isCompositing().
    explicit DarkMenu(bool composited, QWidget* parent = nullptr);

protected:
    /// A shortcut that the menu shows works while it is open.
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_composited;
};

} // namespace Clipboard
