#include "LabelText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

// A label is read at a glance. A paste of megabytes would be laid out on each key.
constexpr qsizetype maxLabelLength = 4000;

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

bool isTyped(const QKeyEvent& event)
{
    return !event.text().isEmpty() && event.text().at(0).isPrint() &&
           !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

} // namespace

LabelText::LabelText(std::function<QString()> copiedText)
    : m_copiedText(std::move(copiedText))
    , m_cursor(&m_document)
{
}

QString LabelText::shown() const
{
    QString text = committed();
    return text.insert(m_cursor.position(), m_preedit);
}

void LabelText::reset(const QString& text)
{
    dropPreedit();
    m_document.setPlainText(text);
    m_document.clearUndoRedoStacks();
    m_cursor.movePosition(QTextCursor::End);
}

void LabelText::dropPreedit()
{
    m_preedit.clear();
    m_preeditCaret = 0;
}

void LabelText::moveTo(qsizetype position, QTextCursor::MoveMode mode)
{
    m_cursor.setPosition(static_cast<int>(std::min<qsizetype>(position, m_document.characterCount() - 1)), mode);
}

void LabelText::insert(const QString& text)
{
    QString lines = text;
    lines.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n').replace(u'\t', u' ');
    const qsizetype room = maxLabelLength - m_document.characterCount() + m_cursor.selectedText().size();
    m_cursor.insertText(lines.left(std::max<qsizetype>(room, 0)));
}

void LabelText::copySelected() const
{
    QString text = m_cursor.selectedText();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text.replace(QChar::ParagraphSeparator, u'\n'));
}

void LabelText::removeUpTo(QTextCursor::MoveOperation operation)
{
    if (!m_cursor.hasSelection())
        m_cursor.movePosition(operation, QTextCursor::KeepAnchor);
    m_cursor.removeSelectedText();
}

LabelText::KeyResult LabelText::handleKey(const QKeyEvent& event)
{
    if (handleMove(event))
        return KeyResult::moved;
    return handleEdit(event) ? KeyResult::changed : KeyResult::notHandled;
}

bool LabelText::handleMove(const QKeyEvent& event)
{
    for (const Move& move : moves) {
        if (event.matches(move.key)) {
            m_cursor.movePosition(move.operation, move.mode);
            return true;
        }
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

bool LabelText::handleEdit(const QKeyEvent& event)
{
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
    return true;
}

void LabelText::compose(const QInputMethodEvent& event)
{
    if (event.replacementLength() > 0 || !event.commitString().isEmpty()) {
        dropPreedit();
        if (event.replacementLength() > 0) {
            const int length = m_document.characterCount() - 1;
            const int from = std::clamp(m_cursor.position() + event.replacementStart(), 0, length);
            m_cursor.setPosition(from);
            m_cursor.setPosition(std::min(from + event.replacementLength(), length), QTextCursor::KeepAnchor);
        }
        insert(event.commitString());
    }
    if (!event.preeditString().isEmpty())
        m_cursor.removeSelectedText();
    m_preedit = event.preeditString().left(maxLabelLength);
    m_preeditCaret = static_cast<int>(m_preedit.size());
    for (const auto& attribute : event.attributes()) {
        if (attribute.type == QInputMethodEvent::Cursor)
            m_preeditCaret = std::clamp(attribute.start, 0, static_cast<int>(m_preedit.size()));
    }
}

} // namespace Clipboard
