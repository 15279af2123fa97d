#include "CanvasView.h"

#include "Accessibility.h"
#include "CanvasCursor.h"
#include "CanvasGround.h"
#include "CanvasOverlay.h"
#include "FrameReport.h"
#include "LabelEditor.h"
#include "QtGraphics.h"

#include "Annotation/AnnotationRenderer.h"
#include "Annotation/EditorLifecycle.h"
#include "Annotation/Geometry.h"

#include <QColorSpace>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

using ClipboardCore::AnnotationSession;
using ClipboardCore::AnnotationTool;

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

constexpr double zoomStep = 1.25;
constexpr double wheelNotch = 120; // the toolkit's unit for one click of the wheel
// Antialiasing touches the pixels beside what it draws.
constexpr double blur = 1;
// More parts cost more than what lies between them.
constexpr int mostParts = 64;

} // namespace

CanvasView::CanvasView(ClipboardCore::EditorLifecycle& lifecycle, std::shared_ptr<const QtTextLayout> textLayout,
                       const std::function<QString()>& copiedText, QWidget* parent)
    : QWidget(parent)
    , m_lifecycle(lifecycle)
    , m_textLayout(std::move(textLayout))
    , m_pictures(this)
    , m_labelEditor(new LabelEditor(m_textLayout, copiedText, this))
{
    setObjectName(u"Canvas"_s);
    setAccessibleName(tr("Picture"));
    Accessibility::setRole(this, QAccessible::Graphic);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    connect(&m_pictures, &CanvasPictures::changed, this, qOverload<>(&QWidget::update));
    connect(m_labelEditor, &LabelEditor::textChanged, this, [this](const QString& text) {
        m_lifecycle.edit([&text](AnnotationSession& session) { session.setText(text); });
        emit edited();
    });
    connect(m_labelEditor, &LabelEditor::pressed, this,
            [this](int clickCount) { m_lifecycle.textFieldMouseDown(clickCount); });
}

CanvasView::~CanvasView() = default;

bool CanvasView::isComposing() const
{
    return m_labelEditor->isComposing();
}

void CanvasView::takeKeyboard()
{
    QWidget* typing = m_labelEditor->isHidden() ? nullptr : m_labelEditor;
    (typing != nullptr ? typing : this)->setFocus();
}

// ── In line with the lifecycle

void CanvasView::sync()
{
    const auto generation = m_lifecycle.shownGeneration();
    if (!generation)
        return; // the window is about to close
    auto before = std::exchange(m_drawn, m_lifecycle.sessionToDraw());
    if (generation != m_generation)
        showDocument(*generation);
    else
        repaintChanges(*before);
    syncLabelEditor();
    syncCursor();
}

void CanvasView::showDocument(ClipboardCore::EditorGeneration generation)
{
    m_generation = generation;
    m_pictures.setPicture(m_drawn->picture(), m_drawn->measures().pixelateBlockSize());
    m_viewport.setPicture(m_drawn->picture()->size());
    endPan();
    update();
    emit zoomed();
}

void CanvasView::repaintChanges(const AnnotationSession& before)
{
    const bool wasCropping = before.tool() == AnnotationTool::crop;
    const bool isCropping = m_drawn->tool() == AnnotationTool::crop;
    if (wasCropping != isCropping)
        return update();
    if (before.crop() != m_drawn->crop())
        update(CanvasOverlay::cropChange(before, *m_drawn, m_viewport, rect()));
    const auto areas = m_drawn->changedAreas(before);
    for (const QRectF& area : areas)
        repaint(m_viewport.toCanvas(area));
    if (before.selection() != m_drawn->selection() || !areas.isEmpty()) {
        repaint(CanvasOverlay::selectionExtent(before, m_viewport));
        repaint(CanvasOverlay::selectionExtent(*m_drawn, m_viewport));
    }
}

void CanvasView::repaint(const QRectF& canvas)
{
    if (!canvas.isEmpty())
        update(ClipboardCore::Geometry::grown(canvas, blur).toAlignedRect());
}

const AnnotationSession* CanvasView::document() const
{
    return m_lifecycle.shownGeneration() == m_generation ? m_lifecycle.session() : nullptr;
}

void CanvasView::syncLabelEditor()
{
    const AnnotationSession* session = document();
    if (session != nullptr && session->editing()) {
        m_labelEditor->sync(*session, m_viewport);
        if (hasFocus())
            m_labelEditor->setFocus(); // a click on the canvas that did not end the typing
        return;
    }
    if (m_labelEditor->isVisible() && m_labelEditor->hasFocus())
        setFocus();
    m_labelEditor->end();
}

void CanvasView::syncCursor()
{
    if (m_panFrom || m_isHandKeyDown)
        return setCursor(m_panFrom ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
    const QPointF at = m_viewport.toPicture(mapFromGlobal(QPointF(QCursor::pos())));
    const auto wanted = m_lifecycle.cursor(at, m_viewport.scale());
    if (wanted)
        setCursor(cursorShape(*wanted));
    else if (!m_lifecycle.isDragging() && m_drawn)
        setCursor(cursorShape(m_lifecycle.aim(at, m_viewport.scale()), m_drawn->tool()));
}

// ── Painting

void CanvasView::paintEvent(QPaintEvent* event)
{
    reportFrame(this, "canvas-painted");
    QPainter painter(this);
    if (!m_drawn)
        return CanvasGround::paint(painter, event->rect());
    const QRegion region = event->region().rectCount() > mostParts ? QRegion(event->rect()) : event->region();
    for (const QRect& part : region) {
        painter.setClipRect(part);
        CanvasGround::paintPicture(painter, m_pictures.scaled(m_viewport.devicePixels()), m_viewport, part);
    }
    // A mark is drawn once, however many parts it crosses.
    painter.setClipRegion(region);
    const QRect bounds = region.boundingRect();
    paintMarks(painter, bounds);
    CanvasOverlay::paintCrop(painter, *m_drawn, m_viewport, rect(), bounds);
    CanvasOverlay::paintSelection(painter, *m_drawn, m_viewport);
}

void CanvasView::paintMarks(QPainter& painter, const QRect& part)
{
    const QRectF region = m_viewport.toPicture(QRectF(part)) & m_drawn->pictureBounds();
    if (region.isEmpty())
        return;
    painter.save();
    painter.translate(m_viewport.toCanvas(region.topLeft()));
    PainterContext context(painter, m_textLayout, QtPicture::imageOf(*m_drawn->picture()).colorSpace());
    ClipboardCore::AnnotationRenderer(*m_drawn, context, region, m_viewport.scale())
        .drawMarks(m_pictures.pixelated().get());
    painter.restore();
}

void CanvasView::resizeEvent(QResizeEvent* event)
{
    m_viewport.setCanvas(event->size(), devicePixelRatioF());
    syncLabelEditor();
    emit zoomed();
    QWidget::resizeEvent(event);
}

// ── Mouse

void CanvasView::mousePressEvent(QMouseEvent* event)
{
    press(*event);
}

void CanvasView::mouseDoubleClickEvent(QMouseEvent* event)
{
    press(*event);
}

void CanvasView::press(const QMouseEvent& event)
{
    const bool isHand = event.button() == Qt::MiddleButton || (event.button() == Qt::LeftButton && m_isHandKeyDown);
    if (isHand && !m_lifecycle.isDragging()) {
        m_panFrom = event.position();
        return syncCursor();
    }
    if (event.button() != Qt::LeftButton || m_panFrom)
        return;
    const int clickCount = m_clicks.count(event);
    m_dragTo = event.position();
    m_lifecycle.mouseDown({m_viewport.toPicture(m_dragTo), m_viewport.scale(), clickCount});
    emit edited();
}

void CanvasView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_panFrom) {
        m_viewport.pan(event->position() - *m_panFrom);
        m_panFrom = event->position();
        return viewChanged();
    }
    if (!m_lifecycle.isDragging())
        return syncCursor();
    drag(event->position(), event->modifiers() & Qt::ShiftModifier);
}

void CanvasView::drag(QPointF to, bool isConstrained)
{
    m_dragTo = to;
    m_lifecycle.mouseDragged({m_viewport.toPicture(to), m_viewport.scale(), 1, isConstrained});
    sync(); // nothing but the canvas changes during a drag
}

void CanvasView::handleShiftKey(bool isDown)
{
    if (m_lifecycle.isDragging())
        drag(m_dragTo, isDown);
}

void CanvasView::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_panFrom)
        return endPan();
    if (event->button() != Qt::LeftButton)
        return;
    m_lifecycle.mouseUp({m_viewport.toPicture(event->position()), m_viewport.scale(), 1});
    emit edited();
}

void CanvasView::endPan()
{
    m_panFrom.reset();
    syncCursor();
}

void CanvasView::wheelEvent(QWheelEvent* event)
{
    event->accept();
    if (event->modifiers() & Qt::ControlModifier) {
        m_viewport.zoomBy(std::pow(zoomStep, event->angleDelta().y() / wheelNotch), event->position());
    } else {
        const bool hasPixels = !event->pixelDelta().isNull();
        QPointF by = hasPixels ? event->pixelDelta() : event->angleDelta() / 2;
        if (event->modifiers() & Qt::ShiftModifier)
            by = by.transposed();
        m_viewport.pan(by);
    }
    viewChanged();
}

void CanvasView::viewChanged()
{
    update();
    syncLabelEditor();
    syncCursor();
    emit zoomed();
}

int CanvasView::zoomPercent() const
{
    return qRound(m_viewport.scale() * devicePixelRatioF() * 100);
}

// ── Keys

bool CanvasView::handleViewKey(const QKeyEvent& event)
{
    if (m_lifecycle.isDragging() || !(event.modifiers() & Qt::ControlModifier))
        return false;
    const QPointF middle = QRectF(rect()).center();
    switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: // the same key without Shift
        m_viewport.zoomBy(zoomStep, middle);
        break;
    case Qt::Key_Minus:
        m_viewport.zoomBy(1 / zoomStep, middle);
        break;
    case Qt::Key_0:
        m_viewport.fit();
        break;
    case Qt::Key_1:
        m_viewport.showActualSize(middle);
        break;
    default:
        return false;
    }
    viewChanged();
    return true;
}

void CanvasView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Space)
        return QWidget::keyPressEvent(event);
    m_isHandKeyDown = true;
    syncCursor();
}

void CanvasView::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Space || event->isAutoRepeat())
        return QWidget::keyReleaseEvent(event);
    m_isHandKeyDown = false;
    syncCursor();
}

void CanvasView::focusOutEvent(QFocusEvent* event)
{
    m_isHandKeyDown = false;
    endPan();
    QWidget::focusOutEvent(event);
}

} // namespace Clipboard
