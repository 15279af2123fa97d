#include "SignButton.h"

#include "Painting.h"
#include "TintedIcon.h"

namespace Clipboard {

namespace {

constexpr int drawingSize = 20;
constexpr int iconWidth = 36;
constexpr int discWidth = 32;

} // namespace

SignButton::SignButton(const QString& name, QLatin1String icon, QWidget* parent)
    : ToolbarButton(name, Theme::rowRadius, parent)
    , m_icon(icon)
{
}

SignButton::SignButton(const QString& name, int discDiameter, QWidget* parent)
    : ToolbarButton(name, Theme::rowRadius, parent)
    , m_disc(discDiameter)
{
}

QSize SignButton::controlSize() const
{
    return {m_disc > 0 ? discWidth : iconWidth, height};
}

void SignButton::paintContent(QPainter& painter, const QRectF& control, const Look& look)
{
    if (m_disc == 0)
        return drawIcon(painter, control, TintedIcon{m_icon, drawingSize, look.sign});
    QRectF disc(0, 0, m_disc, m_disc);
    disc.moveCenter(control.center());
    Painting::roundedFill(painter, disc, m_disc / 2.0, look.sign);
}

} // namespace Clipboard
