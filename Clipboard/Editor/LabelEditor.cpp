#include "LabelEditor.h"

#include "Accessibility.h"
#include "QtGraphics.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <array>

using ClipboardCore::AnnotationSession;

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

constexpr double caretWidth = 1.5;
// Glyphs may reach beyond the label; the widget must not cut them.
constexpr int overhang = 3;
constexpr int selectionAlpha = 90;

QColor toColor(const ClipboardCore::AnnotationColor& color, int alpha = 255)
{
    QColor result = QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                                     static_cast<float>(color.blue));
    result.setAlpha(alpha);
    return result;
}

} // namespace

LabelEditor::LabelEditor(std::shared_ptr<const QtTextLayout> textLayout, std::function<QString()> copiedText,
                         QWidget* canvas)
    : QWidget(canvas)
    , m_textLayout(std::move(textLayout))
    , m_text(std::move(copiedText))
{
    setObjectName(u"LabelEditor"_s);
    setAccessibleName(tr("Label text"));
    Accessibility::setRole(this, QAccessible::EditableText);
    setFocusPolicy(Qt::ClickFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setCursor(Qt::IBeamCursor);
    hide();
}

void LabelEditor::sync(const AnnotationSession& session, const CanvasViewport& viewport)
{
    m_mark = session.annotations().at(*session.editing());
    m_measures = session.measures();
    m_colorSpace = QtPicture::imageOf(*session.picture()).colorSpace();
    m_viewport = viewport;
    if (m_mark.text != m_text.shown())
        m_text.reset(m_mark.text);
    const QRectF drawn = m_viewport.toCanvas(m_measures->drawnBounds(m_mark));
    setGeometry(drawn.toAlignedRect().adjusted(-overhang, -overhang, overhang, overhang));
    if (isHidden()) {
        show();
        setFocus();
    }
    update();
    updateMicroFocus();
}

void LabelEditor::end()
{
    if (isHidden())
        return;
    QGuiApplication::inputMethod()->reset();
    hide();
    m_text.reset({});
}

// ── Places

LabelEditor::Place LabelEditor::placeOf(qsizetype position) const
{
    const QString before = m_text.shown().left(position);
    return {before.count(u'\n'), before.size() - (before.lastIndexOf(u'\n') + 1)};
}

QPointF LabelEditor::caretTop(const Place& place) const
{
    const auto line = m_measures->textLines(m_mark).value(place.line);
    const double x = m_textLayout->caretX(line.text, line.font, std::min(place.column, line.text.size()));
    const QSizeF padding = m_measures->textPadding(m_mark);
    return m_mark.start + QPointF(padding.width() + x,
                                  padding.height() + static_cast<double>(place.line) * m_measures->lineHeight(m_mark));
}

QPointF LabelEditor::toWidget(QPointF picture) const
{
    return m_viewport.toCanvas(picture) - pos();
}

QRectF LabelEditor::caretRect() const
{
    const QPointF top = toWidget(caretTop(placeOf(m_text.caret())));
    return {top.x() - caretWidth / 2, top.y(), caretWidth, m_measures->lineHeight(m_mark) * m_viewport.scale()};
}

qsizetype LabelEditor::positionInLine(qsizetype line, double x) const
{
    const auto lines = m_measures->textLines(m_mark);
    qsizetype position = 0;
    for (qsizetype i = 0; i < line; ++i)
        position += lines[i].text.size() + 1;
    return position + m_textLayout->positionAt(lines[line].text, lines[line].font, x);
}

qsizetype LabelEditor::positionAt(QPointF widgetPoint) const
{
    const QPointF inLabel = m_viewport.toPicture(widgetPoint + pos()) - m_mark.start;
    const QSizeF padding = m_measures->textPadding(m_mark);
    const auto last = m_measures->textLines(m_mark).size() - 1;
    const auto line = static_cast<qsizetype>((inLabel.y() - padding.height()) / m_measures->lineHeight(m_mark));
    return positionInLine(std::clamp<qsizetype>(line, 0, last), inLabel.x() - padding.width());
}

// ── Painting

void LabelEditor::paintRange(QPainter& painter, qsizetype from, qsizetype to, const QColor& color,
                             bool isUnderline) const
{
    const double height = m_measures->lineHeight(m_mark) * m_viewport.scale();
    const QString text = m_text.shown();
    for (qsizetype start = from; start < to;) {
        const qsizetype lineFeed = text.indexOf(u'\n', start);
        const qsizetype end = lineFeed < 0 ? to : std::min(lineFeed, to);
        const QPointF left = toWidget(caretTop(placeOf(start)));
        const QPointF right = toWidget(caretTop(placeOf(end)));
        const QRectF range = QRectF(left, QPointF(right.x(), left.y() + height)).normalized();
        painter.fillRect(isUnderline ? range.adjusted(0, height - caretWidth, 0, 0) : range, color);
        start = end + 1;
    }
}

void LabelEditor::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QColor ink = toColor(m_mark.color.contrasting());
    paintRange(painter, m_text.cursor().selectionStart(), m_text.cursor().selectionEnd(),
               toColor(m_mark.color.contrasting(), selectionAlpha), false);
    painter.save();
    painter.translate(toWidget({}));
    painter.scale(m_viewport.scale(), m_viewport.scale());
    PainterContext context(painter, m_textLayout, m_colorSpace);
    QPointF baseline = m_measures->firstBaseline(m_mark);
    const auto lines = m_measures->textLines(m_mark);
    for (const auto& line : lines) {
        context.drawText(line, baseline);
        baseline.ry() += m_measures->lineHeight(m_mark);
    }
    painter.restore();
    if (isComposing())
        paintRange(painter, m_text.cursor().position(), m_text.cursor().position() + m_text.preedit().size(), ink,
                   true);
    if (hasFocus())
        painter.fillRect(caretRect(), ink);
}

void LabelEditor::focusInEvent(QFocusEvent* event)
{
    update();
    QWidget::focusInEvent(event);
}

void LabelEditor::focusOutEvent(QFocusEvent* event)
{
    update();
    QWidget::focusOutEvent(event);
}

bool LabelEditor::focusNextPrevChild(bool /*next*/)
{
    return false;
}

// ── Keys

void LabelEditor::keyPressEvent(QKeyEvent* event)
{
    const bool isByLine = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    const auto result = isByLine ? moveByLine(*event) : m_text.handleKey(*event);
    if (result == LabelText::KeyResult::notHandled)
        return event->ignore();
    if (result == LabelText::KeyResult::changed)
        emit textChanged(m_text.shown());
    update();
    updateMicroFocus();
}

LabelText::KeyResult LabelEditor::moveByLine(const QKeyEvent& event)
{
    const Place here = placeOf(m_text.caret());
    const auto lines = m_measures->textLines(m_mark);
    const qsizetype target = here.line + (event.key() == Qt::Key_Down ? 1 : -1);
    qsizetype position = target < 0 ? 0 : m_text.shown().size();
    if (target >= 0 && target < lines.size()) {
        const auto& line = lines[here.line];
        position = positionInLine(target, m_textLayout->caretX(line.text, line.font, here.column));
    }
    const bool extends = event.modifiers() & Qt::ShiftModifier;
    m_text.moveTo(position, extends ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
    return LabelText::KeyResult::moved;
}

// ── Input methods

void LabelEditor::inputMethodEvent(QInputMethodEvent* event)
{
    const QString before = m_text.shown();
    m_text.compose(*event);
    event->accept();
    // An input method has nothing to say when the keyboard goes elsewhere, and says so before it has gone.
    if (m_text.shown() != before)
        emit textChanged(m_text.shown());
    update();
    updateMicroFocus();
}

QVariant LabelEditor::inputMethodQuery(Qt::InputMethodQuery query) const
{
    switch (query) {
    case Qt::ImEnabled:
        return true;
    case Qt::ImCursorRectangle:
        return m_measures ? caretRect() : QRectF();
    case Qt::ImCursorPosition:
        return m_text.cursor().position();
    case Qt::ImAnchorPosition:
        return m_text.cursor().anchor();
    case Qt::ImSurroundingText:
        return m_text.committed();
    case Qt::ImCurrentSelection:
        return m_text.cursor().selectedText();
    default:
        return QWidget::inputMethodQuery(query);
    }
}

// ── Mouse

void LabelEditor::mousePressEvent(QMouseEvent* event)
{
    press(*event);
}

void LabelEditor::mouseDoubleClickEvent(QMouseEvent* event)
{
    press(*event);
}

void LabelEditor::press(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton)
        return;
    const int count = m_clicks.count(event);
    emit pressed(count);
    if (isComposing())
        QGuiApplication::inputMethod()->commit();
    const bool extends = event.modifiers() & Qt::ShiftModifier;
    m_text.moveTo(positionAt(event.position()), extends ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
    if (count == 2)
        m_text.select(QTextCursor::WordUnderCursor);
    else if (count > 2)
        m_text.select(QTextCursor::BlockUnderCursor);
    update();
}

void LabelEditor::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton) || isComposing())
        return;
    m_text.moveTo(positionAt(event->position()), QTextCursor::KeepAnchor);
    update();
}

} // namespace Clipboard
