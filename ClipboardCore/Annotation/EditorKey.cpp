#include "Annotation/EditorKey.h"

#include <optional>

namespace ClipboardCore {
namespace {

using Kind = EditorKey::Kind;

EditorKey leaving(EditorExit exit)
{
    return {.kind = Kind::exit, .exit = exit};
}

std::optional<EditorKey> withCommand(const KeyEvent& event)
{
    switch (event.code) {
    case KeyCode::s:
        return leaving(EditorExit::save);
    case KeyCode::c:
        return leaving(EditorExit::copy);
    case KeyCode::return_:
    case KeyCode::keypadEnter:
        return leaving(EditorExit::paste);
    case KeyCode::z:
        return EditorKey{.kind = event.shift ? Kind::redo : Kind::undo};
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

} // namespace

EditorKey EditorKey::fromEvent(const KeyEvent& event)
{
    if (const auto key = event.command ? withCommand(event) : withoutCommand(event))
        return *key;
    if (event.command || event.control || event.option)
        return {};
    if (const auto tool = toolOf(event.code))
        return {.kind = Kind::chooseTool, .tool = *tool};
    return {};
}

} // namespace ClipboardCore
