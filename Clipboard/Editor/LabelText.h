#pragma once

#include <QString>
#include <QTextCursor>
#include <QTextDocument>

#include <functional>

class QInputMethodEvent;
class QKeyEvent;

namespace Clipboard {

/// The text of a label while it is typed: its lines, the caret, the selection, what an input method has not finished,
/// and an undo of its own. Knows nothing of where the text is drawn.
class LabelText final
{
public:
    enum class KeyResult { notHandled, moved, changed };

    /// `copiedText` answers at once what is to be pasted.
    explicit LabelText(std::function<QString()> copiedText);

    /// With what an input method has not finished.
    [[nodiscard]] QString shown() const;
    [[nodiscard]] QString committed() const { return m_document.toPlainText(); }
    [[nodiscard]] const QTextCursor& cursor() const { return m_cursor; }
    /// The caret in the shown text.
    [[nodiscard]] qsizetype caret() const { return m_cursor.position() + m_preeditCaret; }
    [[nodiscard]] const QString& preedit() const { return m_preedit; }

    /// Another text, with the caret at its end and nothing to undo.
    void reset(const QString& text);
    void dropPreedit();
    void moveTo(qsizetype position, QTextCursor::MoveMode mode);
    void select(QTextCursor::SelectionType what) { m_cursor.select(what); }

    /// Every key but those that move by a line, which depend on how the lines are drawn.
    [[nodiscard]] KeyResult handleKey(const QKeyEvent& event);
    void compose(const QInputMethodEvent& event);

private:
    [[nodiscard]] bool handleMove(const QKeyEvent& event);
    [[nodiscard]] bool handleEdit(const QKeyEvent& event);
    void insert(const QString& text);
    void removeUpTo(QTextCursor::MoveOperation operation);
    void copySelected() const;

    std::function<QString()> m_copiedText;
    QTextDocument m_document;
    QTextCursor m_cursor;
    QString m_preedit;
    int m_preeditCaret = 0;
};

} // namespace Clipboard
