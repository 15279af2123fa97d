#include "Annotation/EditorKey.h"

#include <optional>

namespace ClipboardCore {
namespace {

using Kind = EditorKey::Kind;

constexpr int farNudge = 10; // picture pixels, with Shift

EditorKey leaving(EditorExit exit)
{
    return {.kind = Kind::exit, .exit = exit};
}

std::optional<EditorKey> withCommand(const KeyEvent& event)
{
    switch (event.code) {
    case KeyCode::s:
        return event.shift ? EditorKey{.kind = Kind::saveAs} : leaving(EditorExit::save);
    case KeyCode::c:
        return leaving(EditorExit::copy);
    case KeyCode::return_:
    case KeyCode::keypadEnter:
        return leaving(EditorExit::paste);
    case KeyCode::z:
        return EditorKey{.kind = event.shift ? Kind::redo : Kind::undo};
    case KeyCode::y:
        return EditorKey{.kind = Kind::redo};
    case KeyCode::escape:
        return EditorKey{.kind = Kind::escape};
    default:
        return std::nullopt;
    }
}

std::optional<EditorKey> withoutCommand(const KeyEvent& event)
{
    switch (event.code) {
    case KeyCode::return_:
    case KeyCode::keypadEnter:
        return EditorKey{.kind = Kind::confirm};
    case KeyCode::delete_:
    case KeyCode::forwardDelete:
        return EditorKey{.kind = Kind::deleteSelection};
    case KeyCode::escape:
        return EditorKey{.kind = Kind::escape};
    default:
        return std::nullopt;
    }
}

std::optional<AnnotationTool> toolOf(KeyCode code)
{
    switch (code) {
    case KeyCode::c:
        return AnnotationTool::crop;
    case KeyCode::a:
        return AnnotationTool::arrow;
    case KeyCode::r:
        return AnnotationTool::rectangle;
    case KeyCode::t:
        return AnnotationTool::text;
    case KeyCode::h:
        return AnnotationTool::highlighter;
    case KeyCode::p:
        return AnnotationTool::pixelate;
    case KeyCode::n:
        return AnnotationTool::counter;
    default:
        return std::nullopt;
    }
}

std::optional<QPoint> directionOf(KeyCode code)
{
    switch (code) {
    case KeyCode::left:
        return QPoint(-1, 0);
    case KeyCode::right:
        return QPoint(1, 0);
    case KeyCode::up:
        return QPoint(0, -1);
    case KeyCode::down:
        return QPoint(0, 1);
    default:
        return std::nullopt;
    }
}

/// By what the key types: digits and brackets have no place of their own on a keyboard.
std::optional<EditorKey> styleOf(const QString& characters)
{
    if (characters.size() != 1)
        return std::nullopt;
    const char16_t character = characters.front().unicode();
    if (character >= u'1' && character < u'1' + AnnotationPalette::colors.size())
        return EditorKey{.kind = Kind::chooseColor, .color = static_cast<size_t>(character - u'1')};
    if (character == u'[' || character == u']')
        return EditorKey{.kind = Kind::changeSize, .steps = character == u']' ? 1 : -1};
    return std::nullopt;
}

} // namespace

EditorKey EditorKey::fromEvent(const KeyEvent& event)
{
    if (const auto key = event.command ? withCommand(event) : withoutCommand(event))
        return *key;
    if (event.command || event.control || event.option)
        return {};
    if (const auto tool = toolOf(event.code))
        return {.kind = Kind::chooseTool, .tool = *tool};
    if (const auto direction = directionOf(event.code))
        return {.kind = Kind::nudge, .by = *direction * (event.shift ? farNudge : 1)};
    return styleOf(event.charactersIgnoringModifiers).value_or(EditorKey());
}

} // namespace ClipboardCore
