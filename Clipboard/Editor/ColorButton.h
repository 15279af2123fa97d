#pragma once

#include "Annotation/AnnotationColor.h"
#include "ToolbarButton.h"

namespace Clipboard {

/// A disc in one of the palette's colours; the chosen one has a ring.
class ColorButton final : public ToolbarButton
{
    Q_OBJECT
public:
    ColorButton(const QString& name, const ClipboardCore::AnnotationColor& color, QWidget* parent);

    [[nodiscard]] QSize controlSize() const override;

protected:
    [[nodiscard]] Look look() const override { return {}; }
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;

private:
    QColor m_color;
};

} // namespace Clipboard
