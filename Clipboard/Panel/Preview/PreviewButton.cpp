#include "PreviewButton.h"

#include "Accessibility.h"
#include "Painting.h"
#include "TintedIcon.h"

#include <cmath>

using ClipboardCore::ItemAction;

namespace Clipboard {

namespace {

constexpr int signSize = 16;
constexpr int padding = 10;
constexpr int gap = 6;
constexpr int iconButtonWidth = 32;
constexpr qreal usualStroke = 1.75;
constexpr qreal primaryStroke = 2;

QString label(ItemAction action)
{
    switch (action) {
    case ItemAction::paste:
        return PreviewButton::tr("Paste");
    case ItemAction::copy:
        return PreviewButton::tr("Copy");
    case ItemAction::annotate:
        return PreviewButton::tr("Annotate");
    case ItemAction::pin:
        return PreviewButton::tr("Pin");
    case ItemAction::delete_:
        return PreviewButton::tr("Delete");
    }
    Q_UNREACHABLE();
}

/// The key that does the same from anywhere in the panel; none for Copy.
QString keys(ItemAction action)
{
    switch (action) {
    case ItemAction::paste:
        return QString(u'⏎');
    case ItemAction::annotate:
        return PreviewButton::tr("⌘E");
    case ItemAction::pin:
        return PreviewButton::tr("⌘P");
    case ItemAction::delete_:
        return PreviewButton::tr("⌘⌫");
    case ItemAction::copy:
        break;
    }
    return {};
}

const Fonts::Style& labelStyle(bool primary)
{
    return primary ? Fonts::primaryButton : Fonts::button;
}

} // namespace

PreviewButton::PreviewButton(ItemAction action, QWidget* parent)
    : DrawnButton(Theme::buttonRadius, parent)
    , m_action(action)
{
    setText(label(action));
    setAccessibleName(text());
    if (action == ItemAction::pin) {
        setCheckable(true);
        Accessibility::setRole(this, QAccessible::CheckBox);
    }
    setTip(text(), keys(action));
}

bool PreviewButton::hasLabel() const
{
    return m_action == ItemAction::paste || m_action == ItemAction::copy;
}

QSize PreviewButton::controlSize() const
{
    if (!hasLabel())
        return {iconButtonWidth, Theme::buttonHeight};
    const int width = static_cast<int>(std::ceil(Fonts::width(labelStyle(isPrimary()), text())));
    return {padding + signSize + gap + width + padding, Theme::buttonHeight};
}

QLatin1String PreviewButton::iconName() const
{
    switch (m_action) {
    case ItemAction::paste:
        return QLatin1String("paste");
    case ItemAction::copy:
        return QLatin1String("copy");
    case ItemAction::annotate:
        return QLatin1String("annotate");
    case ItemAction::pin:
        return isChecked() ? QLatin1String("pinfill") : QLatin1String("pin");
    case ItemAction::delete_:
        return QLatin1String("trash");
    }
    Q_UNREACHABLE();
}

PreviewButton::Look PreviewButton::primaryLook() const
{
    const QColor lit = isHovered() ? Theme::accentHover : Theme::accent;
    return {isDown() ? Theme::accentPress : lit, {}, Theme::onAccent, Theme::onAccent};
}

PreviewButton::Look PreviewButton::look() const
{
    if (isPrimary())
        return primaryLook();
    if (!isEnabled())
        return {{}, Theme::disabledLine, Theme::textDisabled, Theme::textDisabled};
    if (isChecked())
        return {Theme::rowSel, Theme::rowSelLine, Theme::text, Theme::accent};
    QColor icon = isHovered() ? Theme::text : Theme::text2;
    if (m_action == ItemAction::delete_ && (isHovered() || hasRing()))
        icon = Theme::danger;
    return {controlFill(), Theme::controlLine, Theme::text, icon};
}

void PreviewButton::paintContent(QPainter& painter, const QRectF& control, const Look& look)
{
    const TintedIcon icon{iconName(), signSize, look.sign, isPrimary() ? primaryStroke : usualStroke};
    if (!hasLabel())
        return drawIcon(painter, control, icon);
    drawIcon(painter, {control.left() + padding, control.top(), signSize, control.height()}, icon);
    Painting::textLine(painter, control.adjusted(padding + signSize + gap, 0, 0, 0), labelStyle(isPrimary()),
                       look.label, text());
}

} // namespace Clipboard
