#pragma once

#include "CanvasPictures.h"
#include "CanvasViewport.h"
#include "ClickCounter.h"
#include "QtTextLayout.h"

#include "Annotation/AnnotationSession.h"
#include "Annotation/EditorEvents.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace ClipboardCore {
class EditorLifecycle;
}

namespace Clipboard {

class LabelEditor;

/// The picture with its marks, as the open document has them: drawn, zoomed and moved here, edited by the mouse. Draws
/// again only what changed.
class CanvasView final : public QWidget
{
    Q_OBJECT
public:
    /// `copiedText` answers at once what is to be pasted into a label.
    CanvasView(ClipboardCore::EditorLifecycle& lifecycle, std::shared_ptr<const QtTextLayout> textLayout,
               const std::function<QString()>& copiedText, QWidget* parent);
    ~CanvasView() override;

    /// Brings what is shown in line with the lifecycle.
    void sync();
    /// Gives the keyboard to the label that is being typed, or else to the canvas.
    void takeKeyboard();
    /// True while an input method is composing a label.
    [[nodiscard]] bool isComposing() const;
    [[nodiscard]] const CanvasViewport& viewport() const { return m_viewport; }
    /// How large the picture is shown; 100 is one of its pixels a device pixel.
    [[nodiscard]] int zoomPercent() const;

    /// Whether a drag is constrained may change while the pointer rests.
    void handleShiftKey(bool isDown);
    /// The keys that zoom, and the blank that turns the mouse into a hand. True when it was one of them.
    [[nodiscard]] bool handleViewKey(const QKeyEvent& event);

signals:
    /// The mouse or the keyboard changed the document.
    void edited();
    /// The picture may be shown larger or smaller now.
    void zoomed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void press(const QMouseEvent& event);
    void drag(QPointF to, bool isConstrained);
    void endPan();
    void viewChanged();
    void showDocument(ClipboardCore::EditorGeneration generation);
    void repaintChanges(const ClipboardCore::AnnotationSession& before);
    /// The document on the canvas; null once it is closed, whatever came after it.
    [[nodiscard]] const ClipboardCore::AnnotationSession* document() const;
    void syncLabelEditor();
    void syncCursor();
    void repaint(const QRectF& canvas);
    void paintMarks(QPainter& painter, const QRect& part);

    ClipboardCore::EditorLifecycle& m_lifecycle;
    std::shared_ptr<const QtTextLayout> m_textLayout;
    CanvasPictures m_pictures;
    CanvasViewport m_viewport;
    LabelEditor* m_labelEditor;
    ClickCounter m_clicks;
    std::optional<ClipboardCore::EditorGeneration> m_generation;
    std::optional<ClipboardCore::AnnotationSession> m_drawn; // what is on the screen
    bool m_isHandKeyDown = false;
    std::optional<QPointF> m_panFrom;
    QPointF m_dragTo; // where a drag came to last
};

} // namespace Clipboard
