#pragma once

#include "Annotation/AnnotationTool.h"
#include "Focus/KeyEvent.h"

#include <QLatin1StringView>

namespace ClipboardCore {

/// How the editor is left with a result.
enum class EditorExit { paste, copy, save };

/// A key press by what it means in the editor.
struct EditorKey
{
    enum class Kind { exit, chooseTool, escape, confirm, undo, redo, deleteSelection, other };

    Kind kind = Kind::other;
    EditorExit exit = EditorExit::paste;         // of an exit
    AnnotationTool tool = AnnotationTool::arrow; // of a chooseTool

    [[nodiscard]] static EditorKey fromEvent(const KeyEvent& event);

    bool operator==(const EditorKey&) const = default;
};

/// What the window does about a key press.
struct EditorKeyOutcome
{
    enum class Kind {
        finish,         // handle an EditorEvents::Finish with `exit`
        notHandled,     // the text editor or the window may have the key
        handled,        // the key is consumed
        close,          // handle an EditorEvents::Close
        keepEditing,    // handle an EditorEvents::KeepEditing
        confirmDiscard, // handle an EditorEvents::ConfirmDiscard
    };

    Kind kind = Kind::notHandled;
    EditorExit exit = EditorExit::paste; // of a finish

    bool operator==(const EditorKeyOutcome&) const = default;
};

} // namespace ClipboardCore
