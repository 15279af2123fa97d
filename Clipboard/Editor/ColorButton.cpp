#include "ColorButton.h"

#include "Painting.h"

#include <QPainter>

namespace Clipboard {

namespace {

constexpr QSize cell{28, 36};
constexpr qreal discDiameter = 18;
constexpr qreal ringGap = 2;
constexpr qreal ringWidth = 2;
constexpr QColor discEdge = Theme::rgb(0xFFFFFF, 46);

} // namespace

ColorButton::ColorButton(const QString& name, const ClipboardCore::AnnotationColor& color, QWidget* parent)
    : ToolbarButton(name, Theme::rowRadius, parent)
    , m_color(QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                               static_cast<float>(color.blue)))
{
    setIsChoice();
}

QSize ColorButton::controlSize() const
{
    return cell;
}

void ColorButton::paintContent(QPainter& painter, const QRectF& control, const Look& /*look*/)
{
    QRectF disc(0, 0, discDiameter, discDiameter);
    disc.moveCenter(control.center());
    Painting::roundedFill(painter, disc, discDiameter / 2, m_color, discEdge);
    if (!isChecked() && !isHovered())
        return;
    const qreal middle = ringGap + ringWidth / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(isChecked() ? Theme::text : Theme::controlLine, ringWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(disc.adjusted(-middle, -middle, middle, middle));
}

} // namespace Clipboard
