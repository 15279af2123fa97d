#pragma once

#include "Surface.h"
#include "TintedIcon.h"

#include <QDialog>
#include <QList>

namespace Clipboard {

class DialogButton;

/// The card on which the program's questions and notices stand: a sign, a title, a text, and buttons below each other.
/// Tab, Up and Down move between the buttons, Return presses the marked one, Escape rejects.
class DialogCard : public QDialog
{
    Q_OBJECT
public:
    /// `composited`: see WindowSystem::isCompositing().
    DialogCard(bool composited, const TintedIcon& sign, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;
    /// The margin that holds the shadow.
    [[nodiscard]] QMargins shadow() const { return m_surface.margins(); }

protected:
    /// Line feeds in `text` are kept; longer lines are wrapped into lines of about equal width.
    void setTexts(const QString& title, const QString& text);
    /// Adds a button at the bottom; `keys` stands at its right end.
    DialogButton* addButton(const QString& text, const QString& keys, bool destructive);

    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    [[nodiscard]] QRect card() const;
    [[nodiscard]] int textHeight() const;
    void layOutButtons();
    void moveFocus(int step);

    Surface m_surface;
    TintedIcon m_sign;
    QString m_title;
    QStringList m_lines;
    QList<DialogButton*> m_buttons;
};

} // namespace Clipboard
