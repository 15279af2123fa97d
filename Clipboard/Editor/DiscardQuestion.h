#pragma once

#include <QWidget>

namespace Clipboard {

class DialogCard;

/// Asks, over the darkened window, whether the changes to the picture are to be thrown away.
class DiscardQuestion final : public QWidget
{
    Q_OBJECT
public:
    /// Covers `window` until it is hidden.
    explicit DiscardQuestion(QWidget* window);

    /// Whether the keyboard is with the button that keeps the changes.
    [[nodiscard]] bool isKeepMarked() const;

signals:
    void discardChosen();
    void keepChosen();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    QWidget* m_card;
    QWidget* m_discard = nullptr;
    QWidget* m_keep = nullptr;
};

} // namespace Clipboard
