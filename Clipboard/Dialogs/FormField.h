#pragma once

#include <QLineEdit>

#include <functional>

namespace Clipboard {

/// A text field of a form, on a ground of its own.
class FormField final : public QLineEdit
{
    Q_OBJECT
public:
    /// `copiedText` answers at once what is to be pasted.
    FormField(std::function<QString()> copiedText, QWidget* parent);

    /// Takes whole numbers from `least` to `most` alone; Up and Down count. A `least` of 0 is shown as nothing.
    void setRange(int least, int most);
    /// Of a field with a range, always within it.
    [[nodiscard]] int number() const;
    void setNumber(int number);

signals:
    /// Another number has been entered or counted to.
    void numberChosen(int number);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void chooseNumber();
    void count(int by);

    std::function<QString()> m_copiedText;
    int m_least = 0;
    int m_most = 0;
    int m_chosen = 0;
};

} // namespace Clipboard
