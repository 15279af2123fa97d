#pragma once

#include "Annotation/AnnotationTool.h"
#include "Focus/KeyEvent.h"

#include <QLatin1StringView>
#include <QPoint>

namespace ClipboardCore {

/// How the editor is left with a result.
enum class EditorExit { paste, copy, save };

/// A key press by what it means in the editor.
struct EditorKey
{
    enum class Kind {
        exit,
        chooseTool,
        escape,
        confirm,
        undo,
        redo,
        deleteSelection,
        saveAs,
        chooseColor,
        changeSize,
        nudge,
        other,
    };

    Kind kind = Kind::other;
    EditorExit exit = EditorExit::paste;         // of an exit
    AnnotationTool tool = AnnotationTool::arrow; // of a chooseTool
    size_t color = 0;                            // of a chooseColor: its place in the palette
    int steps = 0;                               // of a changeSize: how many sizes up
    QPoint by{};                                 // of a nudge, in picture pixels

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
        saveAs,         // write the result into a file of the user's choice, and nothing else
    };

    Kind kind = Kind::notHandled;
    EditorExit exit = EditorExit::paste; // of a finish

    bool operator==(const EditorKeyOutcome&) const = default;
};

} // namespace ClipboardCore
