#pragma once

#include "Fonts.h"

#include <QLineEdit>

namespace Clipboard {

class HistoryViewModel;

/// A text field without a box: text, placeholder and a caret in the accent colour. Used for the search and for the
/// command sheet's filter.
class SearchField final : public QLineEdit
{
    Q_OBJECT
public:
    /// It copies and pastes by way of the view model.
    SearchField(const Fonts::Style& style, const QString& placeholder, HistoryViewModel& viewModel, QWidget* parent);

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
    HistoryViewModel& m_viewModel;
    Fonts::Style m_style;
    QString m_placeholder;
    bool m_caretShown = true;
    bool m_composing = false;
};

} // namespace Clipboard
