#include "FormButton.h"

#include "Accessibility.h"
#include "Painting.h"
#include "TintedIcon.h"

#include <QKeyEvent>

#include <cmath>

namespace Clipboard {

namespace {

constexpr int padding = 12;
constexpr QSize slideSize{36, 20};
constexpr int knobInset = 3;
constexpr int signSize = 16;

qreal radiusOf(FormButton::Shape shape)
{
    switch (shape) {
    case FormButton::Shape::button:
        return Theme::buttonRadius;
    case FormButton::Shape::chip:
        return Theme::chipRadius;
    case FormButton::Shape::sliding:
        return slideSize.height() / 2.0;
    }
    Q_UNREACHABLE();
}

} // namespace

FormButton::FormButton(const QString& text, Shape shape, QWidget* parent)
    : DrawnButton(radiusOf(shape), parent)
    , m_shape(shape)
{
    setFocusPolicy(Qt::TabFocus); // the ring is the keyboard's
    setText(text);
    setAccessibleName(text);
}

void FormButton::setIsChoice(QAccessible::Role role)
{
    setCheckable(true);
    Accessibility::setRole(this, role);
}

void FormButton::setSign(QLatin1String sign)
{
    m_sign = sign;
    updateGeometry();
}

QSize FormButton::controlSize() const
{
    if (m_shape == Shape::sliding)
        return slideSize;
    const int height = m_shape == Shape::chip ? Theme::chipHeight : Theme::buttonHeight;
    if (!m_sign.isEmpty())
        return {height, height};
    const auto& font = m_shape == Shape::chip ? Fonts::chip : Fonts::button;
    return {static_cast<int>(std::ceil(Fonts::width(font, text()))) + 2 * padding, height};
}

FormButton::Look FormButton::look() const
{
    if (!m_sign.isEmpty())
        return {{}, {}, {}, isHovered() || hasRing() ? Theme::text2 : Theme::text3};
    if (isChecked() && m_shape == Shape::sliding)
        return {isHovered() ? Theme::accentHover : Theme::accent, {}, {}, Theme::onAccent};
    if (isChecked())
        return {Theme::rowSel, Theme::rowSelLine, Theme::text, {}};
    return {controlFill(), Theme::controlLine, m_shape == Shape::button ? Theme::text : Theme::text2, Theme::text2};
}

void FormButton::paintContent(QPainter& painter, const QRectF& control, const Look& look)
{
    if (!m_sign.isEmpty())
        return drawIcon(painter, control, {m_sign, signSize, look.sign});
    if (m_shape != Shape::sliding)
        return void(Painting::textLine(painter, control, m_shape == Shape::chip ? Fonts::chip : Fonts::button,
                                       look.label, text(), Qt::AlignHCenter));
    QRectF knob = control.adjusted(knobInset, knobInset, -knobInset, -knobInset);
    knob.setWidth(knob.height());
    if (isChecked())
        knob.moveRight(control.right() - knobInset);
    Painting::roundedFill(painter, knob, knob.height() / 2, look.sign);
}

void FormButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        return click();
    DrawnButton::keyPressEvent(event);
}

} // namespace Clipboard
