#pragma once

#include "DrawnButton.h"

#include <QByteArray>

namespace Clipboard {

/// A smart action as symbol and label. Which action it is may change: chips are made once and serve every entry.
class ActionChip final : public DrawnButton
{
    Q_OBJECT
public:
    /// Never wider than `greatestWidth`; a label that does not fit is elided.
    ActionChip(int greatestWidth, QWidget* parent);

    /// The action's label, and the colour of its symbol.
    void setAction(const QString& label, const QColor& tint);

    /// While the action is under way, something turns in place of its symbol.
    void setBusy(bool busy);

    [[nodiscard]] QSize controlSize() const override;

protected:
    [[nodiscard]] Look look() const override;
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;
    void timerEvent(QTimerEvent* event) override;

private:
    int m_greatestWidth;
    QByteArray m_icon;
    QColor m_tint;
    bool m_busy = false;
    int m_turn = 0; // in degrees
    QBasicTimer m_turning;
};

} // namespace Clipboard
