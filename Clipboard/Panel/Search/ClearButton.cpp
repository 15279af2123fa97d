#include "ClearButton.h"

#include "TintedIcon.h"

namespace Clipboard {

ClearButton::ClearButton(QWidget* parent)
    : DrawnButton(size / 2.0, parent)
{
    setAccessibleName(tr("Clear search"));
}

ClearButton::Look ClearButton::look() const
{
    return {{}, {}, {}, isHovered() ? Theme::text2 : Theme::text3};
}

void ClearButton::paintContent(QPainter& painter, const QRectF& control, const Look& look)
{
    drawIcon(painter, control, {QLatin1String("clear"), size, look.sign});
}

} // namespace Clipboard
