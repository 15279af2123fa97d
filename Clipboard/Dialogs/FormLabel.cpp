#include "FormLabel.h"

#include "Theme.h"

namespace Clipboard {

namespace {

struct Look
{
    Fonts::Style font;
    QColor color;
};

Look lookOf(FormLabel::Style style)
{
    switch (style) {
    case FormLabel::Style::section:
        return {Fonts::section, Theme::text2};
    case FormLabel::Style::label:
        return {Fonts::label, Theme::text};
    case FormLabel::Style::help:
        return {Fonts::caption, Theme::text2};
    case FormLabel::Style::word:
        return {Fonts::code, Theme::text};
    }
    Q_UNREACHABLE();
}

} // namespace

FormLabel::FormLabel(const QString& text, Style style, QWidget* parent)
    : QLabel(text, parent)
{
    const Look look = lookOf(style);
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setContentsMargins(Theme::ringOutset, 0, Theme::ringOutset, 0); // flush with what the controls draw
    setFont(Fonts::font(look.font));
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, look.color);
    setPalette(colors);
}

} // namespace Clipboard
