#pragma once

#include "CanvasViewport.h"
#include "ClickCounter.h"
#include "LabelText.h"
#include "QtTextLayout.h"

#include "Annotation/AnnotationSession.h"

#include <QColorSpace>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace Clipboard {

/// The text of a label while it is typed, over the label that the canvas draws: the same lines at the same places as in
/// the result. Several lines, selection, undo and input methods; the caret is the keyboard's.
class LabelEditor final : public QWidget
{
    Q_OBJECT
public:
    /// `copiedText` answers at once what is to be pasted.
    LabelEditor(std::shared_ptr<const QtTextLayout> textLayout, std::function<QString()> copiedText, QWidget* canvas);

    /// Takes over the label that is being typed: its text, unless it is what was typed here, and its place.
    void sync(const ClipboardCore::AnnotationSession& session, const CanvasViewport& viewport);
    /// The typing is over: hides, and drops what an input method has not finished.
    void end();

    /// True while an input method is composing: keys are its own then.
    [[nodiscard]] bool isComposing() const { return !m_text.preedit().isEmpty(); }

    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

signals:
    /// With what an input method has not finished.
    void textChanged(const QString& text);
    void pressed(int clickCount);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    /// A place between two characters: the line and how far into it.
    struct Place
    {
        qsizetype line = 0;
        qsizetype column = 0;
    };

    [[nodiscard]] Place placeOf(qsizetype position) const;
    [[nodiscard]] qsizetype positionAt(QPointF widgetPoint) const;
    [[nodiscard]] qsizetype positionInLine(qsizetype line, double x) const;
    [[nodiscard]] QPointF caretTop(const Place& place) const; // in picture pixels
    [[nodiscard]] QRectF caretRect() const;                   // in widget coordinates
    [[nodiscard]] QPointF toWidget(QPointF picture) const;

    LabelText::KeyResult moveByLine(const QKeyEvent& event);
    void press(const QMouseEvent& event);
    void paintRange(QPainter& painter, qsizetype from, qsizetype to, const QColor& color, bool isUnderline) const;

    std::shared_ptr<const QtTextLayout> m_textLayout;
    LabelText m_text;
    ClickCounter m_clicks;

    std::optional<ClipboardCore::AnnotationMeasures> m_measures;
    ClipboardCore::Annotation m_mark;
    QColorSpace m_colorSpace;
    CanvasViewport m_viewport;
};

} // namespace Clipboard
