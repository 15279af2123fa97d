#pragma once

#include "DrawnButton.h"
#include "Focus/FocusKey.h"

namespace Clipboard {

/// One of the buttons below the preview: Paste and Copy with icon and label, the others as icons alone. Checked: the
/// entry is pinned.
class PreviewButton final : public DrawnButton
{
    Q_OBJECT
public:
    PreviewButton(ClipboardCore::ItemAction action, QWidget* parent);

    [[nodiscard]] ClipboardCore::ItemAction action() const { return m_action; }
    [[nodiscard]] QSize controlSize() const override;

protected:
    [[nodiscard]] Look look() const override;
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;

private:
    [[nodiscard]] Look primaryLook() const;
    [[nodiscard]] bool isPrimary() const { return m_action == ClipboardCore::ItemAction::paste; }
    [[nodiscard]] bool hasLabel() const;
    [[nodiscard]] QLatin1String iconName() const;

    ClipboardCore::ItemAction m_action;
};

} // namespace Clipboard
