#include "LabelEditor.h"

#include "Accessibility.h"
#include "QtGraphics.h"

#include <QClipboard>
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

// A label is read at a glance. A paste of megabytes would be laid out on each key.
constexpr qsizetype maxLabelLength = 4000;

constexpr double caretWidth = 1.5;
// Glyphs may reach beyond the label; the widget must not cut them.
constexpr int overhang = 3;
constexpr int selectionAlpha = 90;

struct Move
{
    QKeySequence::StandardKey key;
    QTextCursor::MoveOperation operation;
    QTextCursor::MoveMode mode;
};

constexpr auto moves = std::to_array<Move>({
    {QKeySequence::MoveToNextChar, QTextCursor::Right, QTextCursor::MoveAnchor},
    {QKeySequence::MoveToPreviousChar, QTextCursor::Left, QTextCursor::MoveAnchor},
    {QKeySequence::SelectNextChar, QTextCursor::Right, QTextCursor::KeepAnchor},
    {QKeySequence::SelectPreviousChar, QTextCursor::Left, QTextCursor::KeepAnchor},
    {QKeySequence::MoveToNextWord, QTextCursor::NextWord, QTextCursor::MoveAnchor},
    {QKeySequence::MoveToPreviousWord, QTextCursor::PreviousWord, QTextCursor::MoveAnchor},
    {QKeySequence::SelectNextWord, QTextCursor::NextWord, QTextCursor::KeepAnchor},
    {QKeySequence::SelectPreviousWord, QTextCursor::PreviousWord, QTextCursor::KeepAnchor},
    {QKeySequence::MoveToStartOfLine, QTextCursor::StartOfBlock, QTextCursor::MoveAnchor},
    {QKeySequence::MoveToEndOfLine, QTextCursor::EndOfBlock, QTextCursor::MoveAnchor},
    {QKeySequence::SelectStartOfLine, QTextCursor::StartOfBlock, QTextCursor::KeepAnchor},
    {QKeySequence::SelectEndOfLine, QTextCursor::EndOfBlock, QTextCursor::KeepAnchor},
    {QKeySequence::MoveToStartOfDocument, QTextCursor::Start, QTextCursor::MoveAnchor},
    {QKeySequence::MoveToEndOfDocument, QTextCursor::End, QTextCursor::MoveAnchor},
    {QKeySequence::SelectStartOfDocument, QTextCursor::Start, QTextCursor::KeepAnchor},
    {QKeySequence::SelectEndOfDocument, QTextCursor::End, QTextCursor::KeepAnchor},
});

QColor toColor(const ClipboardCore::AnnotationColor& color, int alpha = 255)
{
    QColor result = QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                                     static_cast<float>(color.blue));
    result.setAlpha(alpha);
    return result;
}

bool isTyped(const QKeyEvent& event)
{
    return !event.text().isEmpty() && event.text().at(0).isPrint() &&
           !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

} // namespace

LabelEditor::LabelEditor(std::shared_ptr<const QtTextLayout> textLayout, std::function<QString()> copiedText,
                         QWidget* canvas)
    : QWidget(canvas)
    , m_textLayout(std::move(textLayout))
    , m_copiedText(std::move(copiedText))
    , m_cursor(&m_document)
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
    if (m_mark.text != shownText()) {
        m_preedit.clear();
        m_document.setPlainText(m_mark.text);
        m_document.clearUndoRedoStacks();
        m_cursor.movePosition(QTextCursor::End);
    }
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
    m_preedit.clear();
    m_document.clear();
}

// ── Text

QString LabelEditor::shownText() const
{
    QString text = m_document.toPlainText();
    return text.insert(m_cursor.position(), m_preedit);
}

void LabelEditor::changed()
{
    emit textChanged(shownText());
}

void LabelEditor::insert(const QString& text)
{
    QString lines = text;
    lines.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n').replace(u'\t', u' ');
    const qsizetype room = maxLabelLength - m_document.characterCount() + m_cursor.selectedText().size();
    m_cursor.insertText(lines.left(std::max<qsizetype>(room, 0)));
}

void LabelEditor::copySelected() const
{
    QString text = m_cursor.selectedText();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text.replace(QChar::ParagraphSeparator, u'\n'));
}

// ── Places

LabelEditor::Place LabelEditor::placeOf(qsizetype position) const
{
    const QString before = shownText().left(position);
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
    const QPointF top = toWidget(caretTop(placeOf(m_cursor.position() + m_preeditCaret)));
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
    const QString text = shownText();
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
    paintRange(painter, m_cursor.selectionStart(), m_cursor.selectionEnd(),
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
        paintRange(painter, m_cursor.position(), m_cursor.position() + m_preedit.size(), ink, true);
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
    if (!handleMove(*event) && !handleEdit(*event))
        return event->ignore();
    update();
    updateMicroFocus();
}

bool LabelEditor::handleMove(const QKeyEvent& event)
{
    for (const Move& move : moves) {
        if (event.matches(move.key)) {
            m_cursor.movePosition(move.operation, move.mode);
            return true;
        }
    }
    const auto mode = event.modifiers() & Qt::ShiftModifier ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor;
    if (event.key() == Qt::Key_Up || event.key() == Qt::Key_Down) {
        moveByLine(event.key() == Qt::Key_Down ? 1 : -1, mode);
        return true;
    }
    if (event.matches(QKeySequence::SelectAll)) {
        m_cursor.select(QTextCursor::Document);
        return true;
    }
    if (event.matches(QKeySequence::Copy)) {
        copySelected();
        return true;
    }
    return false;
}

bool LabelEditor::handleEdit(const QKeyEvent& event)
{
    const auto removeUpTo = [this](QTextCursor::MoveOperation operation) {
        if (!m_cursor.hasSelection())
            m_cursor.movePosition(operation, QTextCursor::KeepAnchor);
        m_cursor.removeSelectedText();
    };
    if (event.matches(QKeySequence::Cut)) {
        copySelected();
        m_cursor.removeSelectedText();
    } else if (event.matches(QKeySequence::Paste)) {
        insert(m_copiedText());
    } else if (event.matches(QKeySequence::Undo)) {
        m_document.undo(&m_cursor);
    } else if (event.matches(QKeySequence::Redo)) {
        m_document.redo(&m_cursor);
    } else if (event.matches(QKeySequence::DeleteStartOfWord)) {
        removeUpTo(QTextCursor::PreviousWord);
    } else if (event.matches(QKeySequence::DeleteEndOfWord)) {
        removeUpTo(QTextCursor::NextWord);
    } else if (event.key() == Qt::Key_Backspace) {
        removeUpTo(QTextCursor::PreviousCharacter);
    } else if (event.key() == Qt::Key_Delete) {
        removeUpTo(QTextCursor::NextCharacter);
    } else if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
        insert(u"\n"_s);
    } else if (isTyped(event)) {
        insert(event.text());
    } else {
        return false;
    }
    changed();
    return true;
}

void LabelEditor::moveByLine(int step, QTextCursor::MoveMode mode)
{
    const Place here = placeOf(m_cursor.position());
    const auto lines = m_measures->textLines(m_mark);
    const qsizetype target = here.line + step;
    if (target < 0 || target >= lines.size()) {
        m_cursor.movePosition(step < 0 ? QTextCursor::Start : QTextCursor::End, mode);
        return;
    }
    const auto& line = lines[here.line];
    const double x = m_textLayout->caretX(line.text, line.font, here.column);
    m_cursor.setPosition(static_cast<int>(positionInLine(target, x)), mode);
}

// ── Input methods

void LabelEditor::inputMethodEvent(QInputMethodEvent* event)
{
    if (event->replacementLength() > 0 || !event->commitString().isEmpty()) {
        m_preedit.clear();
        if (event->replacementLength() > 0) {
            const int length = m_document.characterCount() - 1;
            const int from = std::clamp(m_cursor.position() + event->replacementStart(), 0, length);
            m_cursor.setPosition(from);
            m_cursor.setPosition(std::min(from + event->replacementLength(), length), QTextCursor::KeepAnchor);
        }
        insert(event->commitString());
    }
    if (!event->preeditString().isEmpty())
        m_cursor.removeSelectedText();
    m_preedit = event->preeditString().left(maxLabelLength);
    m_preeditCaret = static_cast<int>(m_preedit.size());
    for (const auto& attribute : event->attributes()) {
        if (attribute.type == QInputMethodEvent::Cursor)
            m_preeditCaret = std::clamp(attribute.start, 0, static_cast<int>(m_preedit.size()));
    }
    event->accept();
    changed();
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
        return m_cursor.position();
    case Qt::ImAnchorPosition:
        return m_cursor.anchor();
    case Qt::ImSurroundingText:
        return m_document.toPlainText();
    case Qt::ImCurrentSelection:
        return m_cursor.selectedText();
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
    m_cursor.setPosition(static_cast<int>(positionAt(event.position())),
                         extends ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
    if (count == 2)
        m_cursor.select(QTextCursor::WordUnderCursor);
    else if (count > 2)
        m_cursor.select(QTextCursor::BlockUnderCursor);
    update();
}

void LabelEditor::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton) || isComposing())
        return;
    m_cursor.setPosition(static_cast<int>(positionAt(event->position())), QTextCursor::KeepAnchor);
    update();
}

} // namespace Clipboard
