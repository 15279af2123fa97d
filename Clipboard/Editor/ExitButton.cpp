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
    setTip(text(), keys(exit));
}

QSize ExitButton::controlSize() const
{
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
    const QRectF sign(control.left() + padding, control.top(), signSize, control.height());
    drawIcon(painter, sign,
             TintedIcon{iconName(m_exit), signSize, look.sign, isPrimary() ? primaryStroke : usualStroke});
    Painting::textLine(painter, control.adjusted(padding + signSize + gap, 0, 0, 0), labelStyle(isPrimary()),
                       look.label, text());
}

} // namespace Clipboard
