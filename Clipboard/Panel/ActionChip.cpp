#include "ActionChip.h"

#include "Painting.h"
#include "SmartActionLabel.h"
#include "SmartActionSymbols.h"
#include "TintedIcon.h"

#include <algorithm>
#include <cmath>

namespace Clipboard {

namespace {

constexpr int padding = 8;
constexpr int signSize = 14;
constexpr int gap = 4;

} // namespace

ActionChip::ActionChip(int greatestWidth, QWidget* parent)
    : DrawnButton(Theme::buttonRadius, parent)
    , m_greatestWidth(greatestWidth)
{
}

void ActionChip::setAction(const QString& label, const QColor& tint)
{
    m_icon = SmartActionSymbols::iconName(label).toLatin1();
    m_tint = tint;
    setText(shownActionLabel(label));
    setAccessibleName(text());
    update();
}

QSize ActionChip::controlSize() const
{
    const int label = static_cast<int>(std::ceil(Fonts::width(Fonts::caption, text())));
    return {std::min(m_greatestWidth, padding + signSize + gap + label + padding), Theme::chipHeight};
}

ActionChip::Look ActionChip::look() const
{
    return {controlFill(), Theme::controlLine, Theme::text, m_tint};
}

void ActionChip::paintContent(QPainter& painter, const QRectF& control, const Look& look)
{
    drawIcon(painter, {control.left() + padding, control.top(), signSize, control.height()},
             {QLatin1String(m_icon), signSize, look.sign});
    Painting::textLine(painter, control.adjusted(padding + signSize + gap, 0, -padding + 1, 0), Fonts::caption,
                       look.label, text());
}

} // namespace Clipboard
