#include "Theme.h"

#include "Fonts.h"

#include <QApplication>
#include <QPalette>

#include <array>

using ClipboardCore::ClipType;

namespace Clipboard::Theme {

namespace {

struct TypeLook
{
    QColor tint;
    QColor readable;
    QLatin1String icon;
};

// In the order of ClipType.
constexpr std::array typeLooks{
    TypeLook{rgb(0x8E9BB5), rgb(0x9EA9BF), QLatin1String("text")},
    TypeLook{rgb(0x3D8BFF), rgb(0x73ABFF), QLatin1String("link")},
    TypeLook{rgb(0xB06CFF), rgb(0xC695FF), QLatin1String("image")},
    TypeLook{rgb(0xFF9F43), rgb(0xFFAC5D), QLatin1String("palette")},
    TypeLook{rgb(0x34D399), rgb(0x50D9A7), QLatin1String("code")},
    TypeLook{rgb(0x2DD4BF), rgb(0x4ADAC8), QLatin1String("file")},
};
static_assert(typeLooks.size() == ClipboardCore::allClipTypes.size());

const TypeLook& look(ClipType type)
{
    return typeLooks.at(static_cast<std::size_t>(type));
}

} // namespace

QColor tint(ClipType type)
{
    return look(type).tint;
}

QColor readableTint(ClipType type)
{
    return look(type).readable;
}

QLatin1String typeIcon(ClipType type)
{
    return look(type).icon;
}

void install()
{
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setCursorFlashTime(0); // a caret that blinks wakes the processor twice a second
    QPalette palette(text, control, controlHover, well, controlLine, text, text, raised, panel);
    palette.setColor(QPalette::Highlight, rowSelLine);
    palette.setColor(QPalette::HighlightedText, text);
    palette.setColor(QPalette::PlaceholderText, text3);
    palette.setColor(QPalette::ToolTipBase, tip);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Link, readableTint(ClipType::link));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, textDisabled);
    // The application's font stays the desktop's: one given in pixels makes the SVG reader lose the texts of icons.
    QApplication::setPalette(palette);
}

} // namespace Clipboard::Theme
