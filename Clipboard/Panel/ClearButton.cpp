#include "ClearButton.h"

#include "TintedIcon.h"

namespace Clipboard {

ClearButton::ClearButton(QWidget* parent)
    : DrawnButton(parent)
{
    setAccessibleName(tr("Clear search"));
}

void ClearButton::paintControl(QPainter& painter, const QRectF& control)
{
    drawIcon(painter, control, {QLatin1String("clear"), size, isHovered() ? Theme::text2 : Theme::text3});
}

} // namespace Clipboard
