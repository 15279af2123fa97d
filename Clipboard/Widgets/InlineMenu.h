#pragma once

#include <QList>
#include <QWidget>

class QAbstractButton;
class QAction;
class QKeyEvent;

namespace Clipboard {

/// A menu inside a window, over all of it: it needs no window of its own, which would take the keyboard from a panel
/// that closes then, and which not every desktop places where it belongs. It goes with a choice, with Escape, and with
/// a press beside it.
class InlineMenu final : public QWidget
{
    Q_OBJECT
public:
    /// Opens over `window`, with its card beside `anchor`, a place in that window: below it where there is room, else
    /// above. The actions have to outlive it.
    InlineMenu(const QList<QAction*>& actions, const QRect& anchor, QWidget* window);
    ~InlineMenu() override;

    /// What a key means here, for a window whose keyboard is elsewhere. Every key is used up.
    void handleKey(const QKeyEvent& event);
    /// The text of the item that Return would choose; empty for none.
    [[nodiscard]] QString current() const;

signals:
    /// It is about to go, before what was chosen is carried out.
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void addRows(const QList<QAction*>& actions);
    void place(const QRect& anchor);
    void highlight(qsizetype row);
    void step(qsizetype by);
    void choose(QAction* action);
    void close();

    struct Row
    {
        QAction* action;
        QAbstractButton* button; // of a separator one that is disabled
        int top;                 // in the page
    };
    QWidget* m_page; // all rows; a low window shows a part of it
    QList<Row> m_rows;
    QRect m_card;
    qsizetype m_current = -1;
};

} // namespace Clipboard
