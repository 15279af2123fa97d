#pragma once

#include "ToolbarButton.h"

namespace Clipboard {

/// A button of the toolbar with a drawing, or a plain disc of some size, in the middle.
class SignButton final : public ToolbarButton
{
    Q_OBJECT
public:
    static constexpr int height = 36;

    SignButton(const QString& name, QLatin1String icon, QWidget* parent);
    SignButton(const QString& name, int discDiameter, QWidget* parent);

    [[nodiscard]] QSize controlSize() const override;

protected:
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;

private:
    QLatin1String m_icon;
    int m_disc = 0; // the diameter; 0 for a drawing
};

} // namespace Clipboard
