#include "ActionChip.h"

#include "Motion.h"
#include "Painting.h"
#include "SmartActionLabel.h"
#include "SmartActionSymbols.h"
#include "TintedIcon.h"

#include <QPainter>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace Clipboard {

namespace {

constexpr int padding = 8;
constexpr int signSize = 14;
constexpr int gap = 4;
constexpr int wholeTurn = 360;
constexpr int turnStep = 30;
constexpr int turnInterval = 80; // a turn a second

/// An open ring.
void paintTurning(QPainter& painter, const QPointF& middle, const QColor& color, int turn)
{
    constexpr qreal radius = 5;
    constexpr qreal stroke = 1.75;
    constexpr int sixteenths = 16; // of a degree, Qt's unit of arcs
    constexpr int opening = 90;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, stroke, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(QRectF(middle.x() - radius, middle.y() - radius, 2 * radius, 2 * radius), -turn * sixteenths,
                    (wholeTurn - opening) * sixteenths);
    painter.restore();
}

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

void ActionChip::setBusy(bool busy)
{
    if (m_busy == busy)
        return;
    m_busy = busy;
    setAccessibleDescription(busy ? tr("Working …") : QString());
    if (busy && !Motion::isReduced())
        m_turning.start(turnInterval, this);
    else
        m_turning.stop();
    update();
}

void ActionChip::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_turning.timerId())
        return DrawnButton::timerEvent(event);
    m_turn = (m_turn + turnStep) % wholeTurn;
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
    const QRectF sign(control.left() + padding, control.top(), signSize, control.height());
    if (m_busy)
        paintTurning(painter, sign.center(), look.sign, m_turn);
    else
        drawIcon(painter, sign, {QLatin1String(m_icon), signSize, look.sign});
    Painting::textLine(painter, control.adjusted(padding + signSize + gap, 0, -padding + 1, 0), Fonts::caption,
                       look.label, text());
}

} // namespace Clipboard
