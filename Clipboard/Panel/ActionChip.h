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

    [[nodiscard]] QSize controlSize() const override;

protected:
    [[nodiscard]] Look look() const override;
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;

private:
    int m_greatestWidth;
    QByteArray m_icon;
    QColor m_tint;
};

} // namespace Clipboard
