#include "FilterChip.h"

#include "Accessibility.h"
#include "ClipItemTexts.h"
#include "Painting.h"

#include <QLocale>
#include <QPainter>

#include <cmath>

namespace Clipboard {

namespace {

constexpr int usualPadding = 8;
constexpr int dotSize = 6;
constexpr int gap = 6;

} // namespace

FilterChip::FilterChip(std::optional<ClipboardCore::ClipType> type, QWidget* parent)
    : DrawnButton(Theme::chipRadius, parent)
    , m_type(type)
    , m_padding(usualPadding)
{
    setCheckable(true);
    Accessibility::setRole(this, QAccessible::RadioButton);
    setText(type ? meta(*type).label : tr("All"));
    setAccessibleName(text());
    setCount(0);
}

void FilterChip::setCount(int count)
{
    if (m_count == count)
        return;
    m_count = count;
    setAccessibleDescription(tr("%n items", nullptr, count));
    updateGeometry();
    update();
}

void FilterChip::setPadding(int padding)
{
    m_padding = padding;
    updateGeometry();
}

QSize FilterChip::controlSize() const
{
    const qreal dot = m_type ? dotSize + gap : 0;
    const qreal label = Fonts::width(Fonts::chip, text());
    const qreal count = Fonts::width(Fonts::badge, QString::number(m_count));
    return {static_cast<int>(std::ceil(2 * m_padding + dot + label + gap + count)), Theme::chipHeight};
}

FilterChip::Look FilterChip::look() const
{
    if (isChecked())
        return {Theme::rowSel, Theme::rowSelLine, Theme::text, Theme::accentSoft};
    if (isDown())
        return {Theme::controlPress, {}, Theme::text2, Theme::text2};
    if (isHovered())
        return {Theme::controlHover, {}, Theme::text, Theme::text2};
    if (m_count == 0)
        return {Theme::faint, {}, Theme::text3, Theme::text3};
    return {Theme::control, {}, Theme::text2, Theme::text2};
}

void FilterChip::paintContent(QPainter& painter, const QRectF& control, const Look& look)
{
    QRectF rest = control.adjusted(m_padding, 0, -m_padding + 1, 0);
    if (m_type) {
        QColor dot = Theme::tint(*m_type);
        if (m_count == 0)
            dot = Painting::blended({dot.red(), dot.green(), dot.blue(), qRound(Theme::emptyChipDotOpacity * 255)},
                                    look.fill);
        const QRectF circle(rest.left(), control.center().y() - dotSize / 2.0, dotSize, dotSize);
        Painting::roundedFill(painter, circle, dotSize / 2.0, dot);
        rest.setLeft(circle.right() + gap);
    }
    Painting::textLine(painter, rest, Fonts::chip, look.label, text());
    rest.setLeft(rest.left() + Fonts::width(Fonts::chip, text()) + gap);
    Painting::textLine(painter, rest, Fonts::badge, look.sign, QString::number(m_count));
}

} // namespace Clipboard
