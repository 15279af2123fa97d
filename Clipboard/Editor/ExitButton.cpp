#include "ExitButton.h"

#include "Painting.h"
#include "TintedIcon.h"

#include <cmath>

using ClipboardCore::EditorExit;

namespace Clipboard {

namespace {

constexpr int buttonHeight = 32;
constexpr int padding = 10;
constexpr int signSize = 16;
constexpr int gap = 6;
constexpr int iconWidth = 36;
constexpr qreal usualStroke = 1.75;
constexpr qreal primaryStroke = 2;

QString label(EditorExit exit)
{
    switch (exit) {
    case EditorExit::paste:
        return ExitButton::tr("Paste");
    case EditorExit::copy:
        return ExitButton::tr("Copy");
    case EditorExit::save:
        return ExitButton::tr("Save");
    }
    Q_UNREACHABLE();
}

QString keys(EditorExit exit)
{
    switch (exit) {
    case EditorExit::paste:
        return ExitButton::tr("⌘⏎");
    case EditorExit::copy:
        return ExitButton::tr("⌘C");
    case EditorExit::save:
        return ExitButton::tr("⌘S");
    }
    Q_UNREACHABLE();
}

QLatin1String iconName(EditorExit exit)
{
    switch (exit) {
    case EditorExit::paste:
        return QLatin1String("paste");
    case EditorExit::copy:
        return QLatin1String("copy");
    case EditorExit::save:
        return QLatin1String("save");
    }
    Q_UNREACHABLE();
}

const Fonts::Style& labelStyle(bool primary)
{
    return primary ? Fonts::primaryButton : Fonts::button;
}

} // namespace

ExitButton::ExitButton(EditorExit exit, QWidget* parent)
    : ToolbarButton(label(exit), Theme::buttonRadius, parent)
    , m_exit(exit)
{
    setTip(exit == EditorExit::save ? tr("Save · with Shift: Save As…") : text(), keys(exit));
}

void ExitButton::setIconOnly(bool isIconOnly)
{
    m_isIconOnly = isIconOnly;
    update();
}

QSize ExitButton::controlSize() const
{
    if (m_isIconOnly)
        return {iconWidth, buttonHeight};
    const int width = static_cast<int>(std::ceil(Fonts::width(labelStyle(isPrimary()), text())));
    return {padding + signSize + gap + width + padding, buttonHeight};
}

ExitButton::Look ExitButton::look() const
{
    if (!isEnabled())
        return {{}, Theme::disabledLine, Theme::textDisabled, Theme::textDisabled};
    if (!isPrimary())
        return {controlFill(), Theme::controlLine, Theme::text, isHovered() ? Theme::text : Theme::text2};
    const QColor lit = isHovered() ? Theme::accentHover : Theme::accent;
    return {isDown() ? Theme::accentPress : lit, {}, Theme::onAccent, Theme::onAccent};
}

void ExitButton::paintContent(QPainter& painter, const QRectF& control, const Look& look)
{
    const TintedIcon icon{iconName(m_exit), signSize, look.sign, isPrimary() ? primaryStroke : usualStroke};
    if (m_isIconOnly)
        return drawIcon(painter, control, icon);
    drawIcon(painter, {control.left() + padding, control.top(), signSize, control.height()}, icon);
    Painting::textLine(painter, control.adjusted(padding + signSize + gap, 0, 0, 0), labelStyle(isPrimary()),
                       look.label, text());
}

} // namespace Clipboard
