#include "SearchField.h"

#include "HistoryViewModel.h"
#include "Painting.h"
#include "Theme.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPainter>

namespace Clipboard {

namespace {

constexpr qreal caretWidth = 1.5;
constexpr int caretHeight = 18;
constexpr int placeholderIndent = 4; // clear of the caret
// Where a line edit without frame puts its text, and how far its cursor rectangle reaches left of the cursor.
constexpr int textInset = 2;
constexpr int cursorRectReach = 5;

/// What an input method says of its text, but for the caret: the toolkit hides its own one then. (One of no width it
/// still draws, a pixel wide, at fractional scales.)
QList<QInputMethodEvent::Attribute> attributesWithoutCaret(const QInputMethodEvent& event)
{
    using Attribute = QInputMethodEvent::Attribute;
    QList<Attribute> attributes;
    int caret = static_cast<int>(event.preeditString().size());
    for (const Attribute& attribute : event.attributes()) {
        if (attribute.type == QInputMethodEvent::Cursor)
            caret = attribute.start;
        else
            attributes.append(attribute);
    }
    attributes.append(Attribute(QInputMethodEvent::Cursor, caret, 0));
    return attributes;
}

} // namespace

SearchField::SearchField(const Fonts::Style& style, const QString& placeholder, HistoryViewModel& viewModel,
                         QWidget* parent)
    : QLineEdit(parent)
    , m_viewModel(viewModel)
    , m_style(style)
    , m_placeholder(placeholder)
{
    setFrame(false);
    setAcceptDrops(false); // an entry on its way out may pass over the field
    setAttribute(Qt::WA_MacShowFocusRect, false);
    setFont(Fonts::font(style));
    setAccessibleName(placeholder);
    QPalette colors = palette();
    colors.setBrush(QPalette::Base, Qt::NoBrush);
    colors.setColor(QPalette::Text, Theme::text);
    colors.setColor(QPalette::Highlight, Theme::rowSelLine);
    colors.setColor(QPalette::HighlightedText, Theme::text);
    setPalette(colors);
    QInputMethodEvent hideCaret({}, attributesWithoutCaret({}));
    QLineEdit::inputMethodEvent(&hideCaret);
}

void SearchField::setCaretShown(bool shown)
{
    if (m_caretShown == shown)
        return;
    m_caretShown = shown;
    update();
}

QRectF SearchField::caretRect() const
{
    const QRect cursor = cursorRect();
    return {static_cast<qreal>(cursor.left() + cursorRectReach), (height() - caretHeight) / 2.0, caretWidth,
            caretHeight};
}

void SearchField::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    if (text().isEmpty() && !m_composing) {
        const QRectF line(textInset + placeholderIndent, 0, width() - textInset - placeholderIndent, height());
        Painting::textLine(painter, line, m_style, Theme::text3, m_placeholder);
    }
    if (m_caretShown && hasFocus() && !hasSelectedText())
        Painting::roundedFill(painter, caretRect(), caretWidth / 2, Theme::accent);
}

// The toolkit's own ways of pasting ask the selection's owner, which may hang, and wait for it. What it copies is gone
// with the program.

void SearchField::keyPressEvent(QKeyEvent* event)
{
    // The toolkit types the letter of a chord that nobody knows.
    const bool isChord = (event->modifiers() & (Qt::AltModifier | Qt::MetaModifier)) != 0 && !event->text().isEmpty();
    const bool cuts = event->matches(QKeySequence::Cut);
    if (event->matches(QKeySequence::Paste))
        insert(m_viewModel.copiedText());
    else if (hasSelectedText() && (cuts || event->matches(QKeySequence::Copy)))
        m_viewModel.copyMarked(selectedText(), std::nullopt);
    else if (isChord)
        return event->ignore();
    else
        return QLineEdit::keyPressEvent(event);
    if (cuts)
        del();
}

void SearchField::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::MiddleButton)
        QLineEdit::mouseReleaseEvent(event);
}

void SearchField::inputMethodEvent(QInputMethodEvent* event)
{
    m_composing = !event->preeditString().isEmpty();
    QInputMethodEvent composing(event->preeditString(), attributesWithoutCaret(*event));
    composing.setCommitString(event->commitString(), event->replacementStart(), event->replacementLength());
    QLineEdit::inputMethodEvent(&composing);
    update();
}

void SearchField::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    m_composing = false; // not every input method says that it gave up
}

void SearchField::contextMenuEvent(QContextMenuEvent* /*event*/)
{
    // A menu of the toolkit's would take the keyboard from the panel, which then closes.
}

} // namespace Clipboard
