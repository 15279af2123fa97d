#pragma once

#include "Annotation/EditorKey.h"
#include "ToolbarButton.h"

namespace Clipboard {

/// One of the ways to leave the editor with a result.
class ExitButton final : public ToolbarButton
{
    Q_OBJECT
public:
    ExitButton(ClipboardCore::EditorExit exit, QWidget* parent);

    /// Without its word, where there is no room for it; its tip and its accessible name keep it.
    void setIconOnly(bool isIconOnly);
    [[nodiscard]] QSize controlSize() const override;

protected:
    [[nodiscard]] Look look() const override;
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;

private:
    [[nodiscard]] bool isPrimary() const { return m_exit == ClipboardCore::EditorExit::paste; }

    ClipboardCore::EditorExit m_exit;
    bool m_isIconOnly = false;
};

} // namespace Clipboard
