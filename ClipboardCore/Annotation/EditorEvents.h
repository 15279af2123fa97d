#pragma once

#include "Annotation/AnnotationSession.h"
#include "Annotation/EditorKey.h"
#include "History/ClipItem.h"
#include "Support/ToastText.h"

#include <QUuid>

#include <optional>
#include <variant>

namespace ClipboardCore {

/// Numbers the documents of the editor; no two have the same one.
using EditorGeneration = qint64;

/// What happens to the editor.
namespace EditorEvents {

/// The user wants to annotate this entry's picture.
struct Open
{
    AnnotationSession session;
    ClipItem item;
};
/// The user leaves with a result.
struct Finish
{
    EditorExit exit = EditorExit::paste;
    bool originalExists = false; // whether the entry's picture file is still on disk
};
/// The answer to EditorOutcomes::Flatten.
struct Flattened
{
    std::optional<QString> path; // of the written picture; nothing when it could not be made or written
    EditorGeneration generation = 0;
};
/// The answer to EditorOutcomes::Commit: the result is in the history and, except for a save, on the pasteboard.
struct Committed
{
    std::optional<QUuid> id; // of the history's entry
    QString snippet;         // of that entry
    EditorGeneration generation = 0;
};
/// The other answer to EditorOutcomes::Commit.
struct CommitFailed
{
    EditorGeneration generation = 0;
};
/// The user wants to leave without a result.
struct Close
{
};
/// The program is to end, as soon as nothing of this document can be lost by it.
struct Quit
{
};
// The answers to the discard question.
struct KeepEditing
{
};
struct ConfirmDiscard
{
};

} // namespace EditorEvents

using EditorEvent = std::variant<EditorEvents::Open, EditorEvents::Finish, EditorEvents::Flattened,
                                 EditorEvents::Committed, EditorEvents::CommitFailed, EditorEvents::Close,
                                 EditorEvents::Quit, EditorEvents::KeepEditing, EditorEvents::ConfirmDiscard>;

/// What the window is asked to do, in order.
namespace EditorOutcomes {

/// Flatten the open session, write the picture and answer with EditorEvents::Flattened.
struct Flatten
{
    EditorGeneration generation = 0;
    bool operator==(const Flatten&) const = default;
};
/// Add the picture at `path` to the history, as made from `original`; put it on the pasteboard unless `exit` is save;
/// answer with EditorEvents::Committed or CommitFailed.
struct Commit
{
    EditorExit exit = EditorExit::paste;
    QString path;
    ClipItem original;
    EditorGeneration generation = 0;
    bool operator==(const Commit&) const = default;
};
/// Paste what is on the pasteboard into the application in front.
struct Paste
{
    QString snippet;
    bool operator==(const Paste&) const = default;
};
/// Show a notice.
struct Toast
{
    ToastText text;
    bool operator==(const Toast&) const = default;
};
/// Close the window and show the panel with this entry selected.
struct Close
{
    std::optional<QUuid> selecting;
    bool operator==(const Close&) const = default;
};
/// Close the window and nothing else: the application that was in front gets its place back.
struct Dismiss
{
    bool operator==(const Dismiss&) const = default;
};

/// Close the window and end the program.
struct Quit
{
    bool operator==(const Quit&) const = default;
};

} // namespace EditorOutcomes

using EditorOutcome =
    std::variant<EditorOutcomes::Flatten, EditorOutcomes::Commit, EditorOutcomes::Paste, EditorOutcomes::Toast,
                 EditorOutcomes::Close, EditorOutcomes::Dismiss, EditorOutcomes::Quit>;

} // namespace ClipboardCore
