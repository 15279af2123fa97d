#include "Annotation/EditorLifecycle.h"

#include <QCoreApplication>

#include <utility>

namespace ClipboardCore {
namespace {

using Kind = EditorKeyOutcome::Kind;

/// The notices, as the translation context "EditorLifecycle".
struct Notice
{
    Q_DECLARE_TR_FUNCTIONS(EditorLifecycle)
};

QString failureNotice(EditorExit exit)
{
    switch (exit) {
    case EditorExit::paste:
        return Notice::tr("Couldn't paste image");
    case EditorExit::copy:
        return Notice::tr("Couldn't copy image");
    case EditorExit::save:
        return Notice::tr("Couldn't save image");
    }
    Q_UNREACHABLE();
}

/// What a key that chooses a tool, a colour or a size does.
std::function<void(AnnotationSession&)> choice(const EditorKey& key)
{
    if (key.kind == EditorKey::Kind::chooseTool)
        return [key](AnnotationSession& session) { session.chooseTool(key.tool); };
    if (key.kind == EditorKey::Kind::chooseColor)
        return [key](AnnotationSession& session) { session.setColor(AnnotationPalette::colors.at(key.color)); };
    return [key](AnnotationSession& session) { session.changeSize(key.steps); };
}

/// What is said of a result that is not pasted.
QString successNotice(EditorExit exit, const QString& snippet)
{
    switch (exit) {
    case EditorExit::paste:
        return Notice::tr("Copied %1 — press ⌘V to paste").arg(snippet);
    case EditorExit::copy:
        return Notice::tr("Copied %1").arg(snippet);
    case EditorExit::save:
        return Notice::tr("Saved image");
    }
    Q_UNREACHABLE();
}

} // namespace

// ── Events

QList<EditorOutcome> EditorLifecycle::handle(const EditorEvent& event)
{
    return std::visit([this](const auto& which) { return on(which); }, event);
}

QList<EditorOutcome> EditorLifecycle::on(const EditorEvents::Open& event)
{
    const Waiting next{event.session, event.item};
    if (!m_open) {
        show(next);
        return {};
    }
    m_open->waiting = next;
    m_open->isQuitting = false; // the latest wish counts
    return isFinishing() ? QList<EditorOutcome>() : askOrLeave();
}

QList<EditorOutcome> EditorLifecycle::on(const EditorEvents::Finish& event)
{
    if (!areExitsAllowed())
        return {};
    m_open->gesture.cancel();
    m_open->session.endEditing();
    const EditorGeneration generation = m_open->generation;
    const ClipItem& original = m_open->original;
    Finishing& finish = m_finishes[generation] = {.exit = event.exit, .original = original};
    if (m_open->session.hasChanges() || !event.originalExists)
        return {EditorOutcomes::Flatten{generation}};
    finish.isCommitting = true;
    return {EditorOutcomes::Commit{event.exit, original.content.toString(), original, generation}};
}

QList<EditorOutcome> EditorLifecycle::on(const EditorEvents::Flattened& event)
{
    const auto finish = m_finishes.find(event.generation);
    if (finish == m_finishes.end() || finish->second.isCommitting)
        return {};
    if (finish->second.isDiscarded) {
        m_finishes.erase(finish);
        return {};
    }
    if (!event.path)
        return fail(finish);
    finish->second.isCommitting = true;
    return {EditorOutcomes::Commit{finish->second.exit, *event.path, finish->second.original, event.generation}};
}

QList<EditorOutcome> EditorLifecycle::on(const EditorEvents::Committed& event)
{
    const auto found = m_finishes.find(event.generation);
    if (found == m_finishes.end() || !found->second.isCommitting)
        return {};
    const Finishing finish = found->second;
    m_finishes.erase(found);

    const EditorOutcome notice = EditorOutcomes::Toast{successNotice(finish.exit, event.snippet)};
    if (finish.isDiscarded)
        return {notice};
    if (m_open->hasSuccessor())
        return QList{notice} + leave({}); // no paste: the editor stays in front, or the program ends
    if (finish.exit == EditorExit::paste)
        return leave({EditorOutcomes::Dismiss{}, EditorOutcomes::Paste{event.snippet}});
    return leave({notice, EditorOutcomes::Close{event.id}});
}

QList<EditorOutcome> EditorLifecycle::on(const EditorEvents::CommitFailed& event)
{
    const auto finish = m_finishes.find(event.generation);
    if (finish == m_finishes.end() || !finish->second.isCommitting)
        return {};
    return fail(finish);
}

QList<EditorOutcome> EditorLifecycle::on(const EditorEvents::Close& /*event*/)
{
    return m_open && !m_open->isConfirmingDiscard ? askOrLeave() : QList<EditorOutcome>();
}

QList<EditorOutcome> EditorLifecycle::on(const EditorEvents::Quit& /*event*/)
{
    if (!m_open)
        return {EditorOutcomes::Quit{}};
    m_open->isQuitting = true;
    m_open->waiting.reset();
    return isFinishing() ? QList<EditorOutcome>() : askOrLeave();
}

QList<EditorOutcome> EditorLifecycle::on(const EditorEvents::KeepEditing& /*event*/)
{
    if (isConfirmingDiscard()) {
        m_open->isConfirmingDiscard = false;
        m_open->isQuitting = false;
        m_open->waiting.reset();
    }
    return {};
}

QList<EditorOutcome> EditorLifecycle::on(const EditorEvents::ConfirmDiscard& /*event*/)
{
    if (!isConfirmingDiscard())
        return {};
    return leave({EditorOutcomes::Close{m_open->original.id}});
}

// ── Transitions

void EditorLifecycle::show(const Waiting& next)
{
    m_open.emplace(OpenDocument{next.session, next.item, ++m_generation});
}

QList<EditorOutcome> EditorLifecycle::leave(const QList<EditorOutcome>& closing)
{
    if (const auto finish = m_finishes.find(m_open->generation); finish != m_finishes.end())
        finish->second.isDiscarded = true;
    if (const auto next = std::exchange(m_open->waiting, std::nullopt)) {
        show(*next);
        return {};
    }
    const bool isQuitting = m_open->isQuitting;
    m_open.reset();
    return isQuitting ? QList<EditorOutcome>{EditorOutcomes::Quit{}} : closing;
}

QList<EditorOutcome> EditorLifecycle::askOrLeave()
{
    if (!m_open->session.hasChanges())
        return leave({EditorOutcomes::Close{m_open->original.id}});
    m_open->isConfirmingDiscard = true;
    m_open->gesture.cancel();
    return {};
}

QList<EditorOutcome> EditorLifecycle::fail(Finishes::iterator finish)
{
    const EditorOutcome notice = EditorOutcomes::Toast{ToastText::failure(failureNotice(finish->second.exit))};
    const bool isStillOpen = !finish->second.isDiscarded;
    m_finishes.erase(finish);
    if (isStillOpen && m_open->hasSuccessor())
        return QList{notice} + askOrLeave();
    return {notice};
}

// ── Keys

EditorKeyOutcome EditorLifecycle::handleKey(const EditorKey& key)
{
    if (!m_open)
        return {Kind::notHandled};
    if (m_open->isConfirmingDiscard && key.kind == EditorKey::Kind::confirm)
        return {Kind::confirmDiscard};
    if (m_open->isConfirmingDiscard && key.kind == EditorKey::Kind::escape)
        return {Kind::keepEditing};
    if (m_open->gesture.isInProgress())
        return {Kind::handled};
    return m_open->session.editing() ? keyWhileTyping(key) : keyOnCanvas(key);
}

EditorKeyOutcome EditorLifecycle::keyWhileTyping(const EditorKey& key)
{
    if (key.kind == EditorKey::Kind::escape) {
        m_open->session.endEditing();
        return {Kind::handled};
    }
    if (key.kind == EditorKey::Kind::exit && key.exit != EditorExit::copy)
        return {Kind::finish, key.exit};
    if (key.kind == EditorKey::Kind::saveAs)
        return saveAs();
    return {Kind::notHandled}; // the text editor types it, or copies what is selected in it
}

EditorKeyOutcome EditorLifecycle::keyOnCanvas(const EditorKey& key)
{
    const bool isAsking = m_open->isConfirmingDiscard;
    const auto change = [this](const auto& operation) {
        edit(operation);
        return EditorKeyOutcome{Kind::handled};
    };
    switch (key.kind) {
    case EditorKey::Kind::exit:
        return isAsking ? EditorKeyOutcome{Kind::handled} : EditorKeyOutcome{Kind::finish, key.exit};
    case EditorKey::Kind::chooseTool:
    case EditorKey::Kind::chooseColor:
    case EditorKey::Kind::changeSize:
        return isAsking ? EditorKeyOutcome{Kind::notHandled} : change(choice(key));
    case EditorKey::Kind::escape:
        return {Kind::close};
    case EditorKey::Kind::undo:
        return isAsking ? EditorKeyOutcome{Kind::handled} : change([](AnnotationSession& session) { session.undo(); });
    case EditorKey::Kind::redo:
        return isAsking ? EditorKeyOutcome{Kind::handled} : change([](AnnotationSession& session) { session.redo(); });
    case EditorKey::Kind::deleteSelection:
        if (isAsking || !m_open->session.selection())
            return {Kind::notHandled};
        return change([](AnnotationSession& session) { session.deleteSelection(); });
    case EditorKey::Kind::nudge:
        if (isAsking || !m_open->session.selection())
            return {Kind::notHandled};
        return change([&key](AnnotationSession& session) { session.nudgeSelection(key.by); });
    case EditorKey::Kind::saveAs:
        return saveAs();
    case EditorKey::Kind::confirm:
    case EditorKey::Kind::other:
        return {Kind::notHandled};
    }
    Q_UNREACHABLE();
}

EditorKeyOutcome EditorLifecycle::saveAs() const
{
    return {areExitsAllowed() ? Kind::saveAs : Kind::handled};
}

// ── The open document

void EditorLifecycle::edit(const std::function<void(AnnotationSession&)>& change)
{
    if (isEditable())
        change(m_open->session);
}

void EditorLifecycle::mouseDown(const CanvasGesture::Mouse& mouse)
{
    if (areExitsAllowed())
        m_open->gesture.mouseDown(mouse, m_open->session);
}

void EditorLifecycle::mouseDragged(const CanvasGesture::Mouse& mouse)
{
    if (m_open)
        m_open->gesture.mouseDragged(mouse, m_open->session);
}

void EditorLifecycle::mouseUp(const CanvasGesture::Mouse& mouse)
{
    if (m_open)
        m_open->gesture.mouseUp(mouse, m_open->session);
}

void EditorLifecycle::textFieldMouseDown(int clickCount)
{
    if (m_open)
        m_open->gesture.textFieldMouseDown(clickCount);
}

std::optional<CanvasGesture::Cursor> EditorLifecycle::cursor(QPointF at, double scale) const
{
    return m_open ? m_open->gesture.cursor(at, m_open->session, scale) : std::nullopt;
}

CanvasGesture::Aim EditorLifecycle::aim(QPointF at, double scale) const
{
    return areExitsAllowed() ? CanvasGesture::aim(at, m_open->session, scale) : CanvasGesture::Aim::nothing;
}

const AnnotationSession* EditorLifecycle::session() const
{
    return m_open ? &m_open->session : nullptr;
}

std::optional<AnnotationSession> EditorLifecycle::sessionToDraw() const
{
    if (!m_open)
        return std::nullopt;
    return m_open->gesture.applied(m_open->session);
}

bool EditorLifecycle::isDragging() const
{
    return m_open && m_open->gesture.isInProgress();
}

const ClipItem* EditorLifecycle::original() const
{
    return m_open ? &m_open->original : nullptr;
}

bool EditorLifecycle::isConfirmingDiscard() const
{
    return m_open && m_open->isConfirmingDiscard;
}

const ClipItem* EditorLifecycle::waitingItem() const
{
    return m_open && m_open->waiting ? &m_open->waiting->item : nullptr;
}

std::optional<EditorGeneration> EditorLifecycle::shownGeneration() const
{
    return m_open ? std::optional(m_open->generation) : std::nullopt;
}

bool EditorLifecycle::isFinishing() const
{
    return m_open && m_finishes.contains(m_open->generation);
}

bool EditorLifecycle::areExitsAllowed() const
{
    return m_open && !m_open->isConfirmingDiscard && !isFinishing();
}

} // namespace ClipboardCore
