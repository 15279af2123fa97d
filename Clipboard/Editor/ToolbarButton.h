#pragma once

#include "DrawnButton.h"

namespace Clipboard {

/// What the buttons of the editor's toolbar have in common: they can be reached and pressed by the keyboard, their tips
/// appear below the toolbar, and one of a group is chosen.
class ToolbarButton : public DrawnButton
{
    Q_OBJECT
public:
    ToolbarButton(const QString& name, qreal cornerRadius, QWidget* parent);

    /// Makes it one of a group, of which one is chosen.
    void setIsChoice();

protected:
    [[nodiscard]] Look look() const override;
    [[nodiscard]] QRect tipAnchor() const override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace Clipboard
