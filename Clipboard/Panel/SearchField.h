#pragma once

#include "Fonts.h"

#include <QLineEdit>

#include <functional>

namespace Clipboard {

/// A text field without a box: text, placeholder and a caret in the accent colour. Used for the search and for the
/// command sheet's filter.
class SearchField final : public QLineEdit
{
    Q_OBJECT
public:
    /// `copiedText` answers at once what is to be pasted.
    SearchField(const Fonts::Style& style, const QString& placeholder, std::function<QString()> copiedText,
                QWidget* parent);

    /// The caret is drawn while this is on and the field has the keyboard.
    void setCaretShown(bool shown);
    /// True while an input method is composing: keys are its own then.
    [[nodiscard]] bool isComposing() const { return m_composing; }

    /// The caret in widget coordinates.
    [[nodiscard]] QRectF caretRect() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    Fonts::Style m_style;
    QString m_placeholder;
    std::function<QString()> m_copiedText;
    bool m_caretShown = true;
    bool m_composing = false;
};

} // namespace Clipboard
