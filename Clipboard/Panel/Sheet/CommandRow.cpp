#include "CommandRow.h"

#include "Accessibility.h"
#include "KeyCap.h"
#include "Painting.h"
#include "SmartActionLabel.h"
#include "SmartActionSymbols.h"
#include "TintedIcon.h"

#include <QPainter>

namespace Clipboard {

namespace {

constexpr int padding = 10;
constexpr int signFrame = 18;
constexpr int signSize = 16;
constexpr int gap = 10;

} // namespace

CommandRow::CommandRow(const QString& label, std::optional<int> ordinal, const QColor& tint, QWidget* parent)
    : QAbstractButton(parent)
    , m_icon(SmartActionSymbols::iconName(label).toLatin1())
    , m_ordinal(ordinal)
    , m_tint(tint)
{
    Accessibility::setRole(this, QAccessible::ListItem);
    setText(shownActionLabel(label));
    setAccessibleName(text());
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    if (ordinal)
        Accessibility::setShortcut(this, tr("⌘%1").arg(*ordinal));
}

void CommandRow::setSelected(bool selected)
{
    Accessibility::setFocused(this, selected);
    if (m_selected == selected)
        return;
    m_selected = selected;
    update();
}

QString CommandRow::keys() const
{
    if (m_selected)
        return QString(u'⏎');
    return m_ordinal ? tr("⌘%1").arg(*m_ordinal) : QString();
}

void CommandRow::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRectF row(rect());
    if (m_selected)
        Painting::roundedFill(painter, row, Theme::rowRadius, Theme::rowSel, Theme::rowSelLine);
    const QRectF frame(padding, 0, signFrame, height);
    drawIcon(painter, frame, {QLatin1String(m_icon), signSize, m_selected ? QColor(Theme::text) : m_tint});
    const QSizeF cap = KeyCap::size(keys());
    const QRectF label(frame.right() + gap, 0, row.right() - padding - cap.width() - gap - frame.right() - gap, height);
    Painting::textLine(painter, label, m_selected ? Fonts::button : Fonts::label, Theme::text, text());
    KeyCap::draw(painter, {row.right() - padding - cap.width(), (height - cap.height()) / 2}, keys(),
                 m_selected ? KeyCap::selected : KeyCap::normal);
}

void CommandRow::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_selected)
        emit pointedAt();
    QAbstractButton::mouseMoveEvent(event);
}

} // namespace Clipboard
