#include "EditorWindow.h"

#include "CanvasView.h"
#include "DiscardQuestion.h"
#include "EditorToolbar.h"
#include "KeyTranslation.h"
#include "Painting.h"
#include "Theme.h"

#include "Annotation/EditorLifecycle.h"

#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QScreen>
#include <QWindow>

using ClipboardCore::AnnotationSession;
using ClipboardCore::EditorKey;
using ClipboardCore::EditorKeyOutcome;

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

constexpr int hintHeight = 36; // its seam at the top included
constexpr int hintPadding = 16;
constexpr int leastHeight = 420;
constexpr QSize comfortable{1120, 760};
constexpr int screenMargin = 48; // for the window manager's frame, and to see that there is something behind

} // namespace

EditorWindow::EditorWindow(ClipboardCore::EditorLifecycle& lifecycle,
                           const std::shared_ptr<const QtTextLayout>& textLayout,
                           const std::function<QString()>& copiedText)
    : QWidget(nullptr, Qt::Window)
    , m_lifecycle(lifecycle)
    , m_toolbar(new EditorToolbar(this))
    , m_canvas(new CanvasView(lifecycle, textLayout, copiedText, this))
{
    setObjectName(u"EditorWindow"_s);
    setWindowTitle(tr("Annotate"));
    setWindowIcon(QIcon(u":/icons/tessaly.svg"_s));
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connectToolbar();
    connect(m_canvas, &CanvasView::edited, this, &EditorWindow::sync);
    connect(m_canvas, &CanvasView::zoomed, this, &EditorWindow::syncHintBar);
}

EditorWindow::~EditorWindow() = default;

void EditorWindow::connectToolbar()
{
    connect(m_toolbar, &EditorToolbar::toolChosen, this, [this](ClipboardCore::AnnotationTool tool) {
        edit([tool](AnnotationSession& session) { session.chooseTool(tool); });
    });
    connect(m_toolbar, &EditorToolbar::colorChosen, this, [this](const ClipboardCore::AnnotationColor& color) {
        edit([&color](AnnotationSession& session) { session.setColor(color); });
        emit colorChosen(color);
    });
    connect(m_toolbar, &EditorToolbar::sizeChosen, this, [this](ClipboardCore::AnnotationSize size) {
        edit([size](AnnotationSession& session) { session.setSize(size); });
        emit sizeChosen(size);
    });
    connect(m_toolbar, &EditorToolbar::undoChosen, this,
            [this] { edit([](AnnotationSession& session) { session.undo(); }); });
    connect(m_toolbar, &EditorToolbar::redoChosen, this,
            [this] { edit([](AnnotationSession& session) { session.redo(); }); });
    connect(m_toolbar, &EditorToolbar::exitChosen, this, &EditorWindow::finishRequested);
    connect(m_toolbar, &EditorToolbar::saveAsChosen, this, &EditorWindow::saveAsRequested);
}

void EditorWindow::edit(const std::function<void(AnnotationSession&)>& change)
{
    m_lifecycle.edit(change);
    sync();
}

void EditorWindow::placeOn(const QScreen& screen)
{
    const QRect room = screen.availableGeometry().adjusted(screenMargin, screenMargin, -screenMargin, -screenMargin);
    constexpr int around = static_cast<int>(2 * CanvasViewport::margin);
    const QSize picture = m_lifecycle.session()->picture()->size() + QSize(around, around);
    const QSize wanted = (picture + QSize(0, EditorToolbar::height + hintHeight)).expandedTo(comfortable);
    setMinimumSize(QSize(m_toolbar->leastWidth(), leastHeight).boundedTo(room.size()));
    QRect place(QPoint(), wanted.boundedTo(room.size()).expandedTo(minimumSize()));
    place.moveCenter(room.center());
    setGeometry(place);
}

// ── In line with the lifecycle

void EditorWindow::sync()
{
    const AnnotationSession* session = m_lifecycle.session();
    if (session == nullptr)
        return; // about to close
    // While the question is up the toolbar lies in its shade, and looks as before.
    m_toolbar->sync(*session, m_lifecycle.areExitsAllowed() || m_lifecycle.isConfirmingDiscard());
    m_canvas->sync();
    syncHintBar();
    syncQuestion();
}

void EditorWindow::leave()
{
    m_isLeaving = true;
    m_toolbar->disconnect(this); // assistive programs press buttons without an event
}

void EditorWindow::syncHintBar()
{
    const AnnotationSession* session = m_lifecycle.session();
    if (session == nullptr || m_isLeaving)
        return;
    const QString hint = tr("%1 · esc to close").arg(ClipboardCore::hint(session->tool()));
    //: How large the picture is shown
    const QString zoom = tr("%1%").arg(QLocale().toString(m_canvas->zoomPercent()));
    if (m_hint == hint && m_zoom == zoom)
        return;
    m_hint = hint;
    m_zoom = zoom;
    update(hintBar());
}

void EditorWindow::syncQuestion()
{
    if (m_lifecycle.isConfirmingDiscard() == (m_question != nullptr))
        return;
    if (m_question != nullptr) {
        m_question->hide();
        m_question->deleteLater(); // one of its buttons may be at work
        m_question = nullptr;
        m_canvas->takeKeyboard();
        return;
    }
    m_question = new DiscardQuestion(this);
    connect(m_question, &DiscardQuestion::discardChosen, this, &EditorWindow::discardRequested);
    connect(m_question, &DiscardQuestion::keepChosen, this, &EditorWindow::keepEditingRequested);
    m_question->show();
}

// ── Keys

bool EditorWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (m_isLeaving && event->isInputEvent())
        return true;
    const bool isPress = event->type() == QEvent::KeyPress;
    if (isPress || event->type() == QEvent::KeyRelease) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (key.key() == Qt::Key_Shift)
            m_canvas->handleShiftKey(isPress);
        if (isPress && handleKey(key))
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool EditorWindow::handleKey(const QKeyEvent& event)
{
    if (m_canvas->isComposing())
        return false;
    const EditorKey key = EditorKey::fromEvent(translateKey(event));
    if (key.kind == EditorKey::Kind::confirm && m_question != nullptr && m_question->isKeepMarked()) {
        emit keepEditingRequested(); // Return does what the ring marks
        return true;
    }
    if (key.kind == EditorKey::Kind::nudge && !m_canvas->hasFocus())
        return false; // on the toolbar the arrows go from button to button
    const EditorKeyOutcome outcome = m_lifecycle.handleKey(key);
    sync();
    if (outcome.kind == EditorKeyOutcome::Kind::handled)
        announceStyle(key);
    if (follow(outcome))
        return true;
    return m_question == nullptr && m_canvas->handleViewKey(event);
}

void EditorWindow::announceStyle(const EditorKey& key)
{
    const AnnotationSession& session = *m_lifecycle.session();
    if (key.kind == EditorKey::Kind::chooseColor)
        emit colorChosen(session.color());
    else if (key.kind == EditorKey::Kind::changeSize)
        emit sizeChosen(session.size());
}

bool EditorWindow::follow(const EditorKeyOutcome& outcome)
{
    switch (outcome.kind) {
    case EditorKeyOutcome::Kind::notHandled:
        return false;
    case EditorKeyOutcome::Kind::handled:
        break;
    case EditorKeyOutcome::Kind::finish:
        emit finishRequested(outcome.exit);
        break;
    case EditorKeyOutcome::Kind::close:
        emit closeRequested();
        break;
    case EditorKeyOutcome::Kind::keepEditing:
        emit keepEditingRequested();
        break;
    case EditorKeyOutcome::Kind::confirmDiscard:
        emit discardRequested();
        break;
    case EditorKeyOutcome::Kind::saveAs:
        emit saveAsRequested();
        break;
    }
    return true;
}

// ── Window

void EditorWindow::closeEvent(QCloseEvent* event)
{
    event->ignore(); // the lifecycle decides
    emit closeRequested();
}

void EditorWindow::showEvent(QShowEvent* event)
{
    windowHandle()->installEventFilter(this);
    m_canvas->takeKeyboard();
    QWidget::showEvent(event);
}

void EditorWindow::resizeEvent(QResizeEvent* event)
{
    m_toolbar->setGeometry(0, 0, width(), EditorToolbar::height);
    m_canvas->setGeometry(0, EditorToolbar::height, width(), height() - EditorToolbar::height - hintHeight);
    if (m_question != nullptr)
        m_question->setGeometry(rect());
    QWidget::resizeEvent(event);
}

QRect EditorWindow::hintBar() const
{
    return {0, height() - hintHeight, width(), hintHeight};
}

void EditorWindow::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRect bar = hintBar();
    painter.fillRect(bar, Theme::panel);
    painter.fillRect(QRect(bar.topLeft(), QSize(bar.width(), 1)), Theme::seam);
    const QRect texts = bar.adjusted(hintPadding, 1, -hintPadding, 0);
    Painting::textLine(painter, texts, Fonts::caption, Theme::text2, m_hint, Qt::AlignHCenter);
    Painting::textLine(painter, texts, Fonts::caption, Theme::text2, m_zoom, Qt::AlignRight);
}

} // namespace Clipboard
