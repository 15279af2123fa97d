#pragma once

#include "Annotation/CanvasGesture.h"
#include "Annotation/EditorEvents.h"

#include <QList>

#include <functional>
#include <map>

namespace ClipboardCore {

/// The state of the annotation editor: which document is open, what a key means, when a question is asked, and which
/// late answers still count. It does nothing itself: the window feeds it events and carries out the outcomes, in order.
/// docs/editor-lifecycle.md has the table of its transitions. Main thread only.
///
/// A document that is being finished cannot be changed: what is written is what was on screen.
class EditorLifecycle final
{
public:
    [[nodiscard]] QList<EditorOutcome> handle(const EditorEvent& event);
    /// Decides what a key means now; what changes the open session alone happens here.
    [[nodiscard]] EditorKeyOutcome handleKey(const EditorKey& key);

    /// Changes the open session. Nothing happens while there is none or it is being finished.
    void edit(const std::function<void(AnnotationSession&)>& change);
    // The mouse on the canvas. A press counts only while exits are allowed: no question up, nothing being finished.
    void mouseDown(const CanvasGesture::Mouse& mouse);
    void mouseDragged(const CanvasGesture::Mouse& mouse);
    void mouseUp(const CanvasGesture::Mouse& mouse);
    void textFieldMouseDown(int clickCount);
    [[nodiscard]] std::optional<CanvasGesture::Cursor> cursor(QPointF at, double scale) const;
    /// What a press on the canvas would begin.
    [[nodiscard]] CanvasGesture::Aim aim(QPointF at, double scale) const;

    /// The open session; null while the editor is closed. Valid until the next call that is not const.
    [[nodiscard]] const AnnotationSession* session() const;
    /// The session as a drag in progress would leave it. Made anew by each call during a drag: ask once a frame.
    [[nodiscard]] std::optional<AnnotationSession> sessionToDraw() const;
    [[nodiscard]] bool isDragging() const;
    /// The entry whose picture is open; null while the editor is closed.
    [[nodiscard]] const ClipItem* original() const;
    /// Whether the discard question is to be on screen.
    [[nodiscard]] bool isConfirmingDiscard() const;
    /// The entry that opens as soon as the open document is gone; null when none waits.
    [[nodiscard]] const ClipItem* waitingItem() const;
    /// The number of the open document: another number, another document.
    [[nodiscard]] std::optional<EditorGeneration> shownGeneration() const;
    /// A document is open, no question is up, and no exit is in progress.
    [[nodiscard]] bool areExitsAllowed() const;

private:
    struct Waiting
    {
        AnnotationSession session;
        ClipItem item;
    };
    struct OpenDocument
    {
        AnnotationSession session;
        ClipItem original;
        EditorGeneration generation = 0;
        bool isConfirmingDiscard = false;
        // What comes after it: another document, the end of the program, or neither.
        std::optional<Waiting> waiting = std::nullopt;
        bool isQuitting = false;
        CanvasGesture gesture{};

        [[nodiscard]] bool hasSuccessor() const { return waiting || isQuitting; }
    };
    struct Finishing
    {
        EditorExit exit = EditorExit::paste;
        ClipItem original;
        bool isDiscarded = false;  // its document is gone: no commit any more, or no more than a notice of it
        bool isCommitting = false; // the commit was handed out, once
    };
    using Finishes = std::map<EditorGeneration, Finishing>;

    [[nodiscard]] QList<EditorOutcome> on(const EditorEvents::Open& event);
    [[nodiscard]] QList<EditorOutcome> on(const EditorEvents::Finish& event);
    [[nodiscard]] QList<EditorOutcome> on(const EditorEvents::Flattened& event);
    [[nodiscard]] QList<EditorOutcome> on(const EditorEvents::Committed& event);
    [[nodiscard]] QList<EditorOutcome> on(const EditorEvents::CommitFailed& event);
    [[nodiscard]] QList<EditorOutcome> on(const EditorEvents::Close& event);
    [[nodiscard]] QList<EditorOutcome> on(const EditorEvents::Quit& event);
    [[nodiscard]] QList<EditorOutcome> on(const EditorEvents::KeepEditing& event);
    [[nodiscard]] QList<EditorOutcome> on(const EditorEvents::ConfirmDiscard& event);

    [[nodiscard]] bool isFinishing() const;
    /// Whether the session may change: a document is open and not being finished.
    [[nodiscard]] bool isEditable() const { return m_open && !isFinishing(); }
    /// Opens a document, in the place of the open one if there is one.
    void show(const Waiting& next);
    /// The open document goes, and what comes after it comes; without that the window closes with these outcomes.
    [[nodiscard]] QList<EditorOutcome> leave(const QList<EditorOutcome>& closing);
    /// Leaves without a result, at once or after the discard question.
    [[nodiscard]] QList<EditorOutcome> askOrLeave();
    [[nodiscard]] QList<EditorOutcome> fail(Finishes::iterator finish);
    [[nodiscard]] EditorKeyOutcome keyWhileTyping(const EditorKey& key);
    [[nodiscard]] EditorKeyOutcome saveAs() const;
    [[nodiscard]] EditorKeyOutcome keyOnCanvas(const EditorKey& key);

    std::optional<OpenDocument> m_open;
    EditorGeneration m_generation = 0;
    Finishes m_finishes;
};

} // namespace ClipboardCore
