#pragma once

#include <QWidget>

namespace Clipboard {

/// The name of a control and the key that does the same, shown beside it after a while. Part of the control's window.
class HoverTip final : public QWidget
{
    Q_OBJECT
public:
    /// `control` is in the coordinates of `window`; the tip appears above it, inside the window's contents, or below it
    /// where there is no room.
    HoverTip(const QString& text, const QString& keys, const QRect& control, QWidget* window);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
    QString m_keys;
};

} // namespace Clipboard
