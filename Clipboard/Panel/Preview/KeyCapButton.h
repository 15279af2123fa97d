#pragma once

#include "DrawnButton.h"

namespace Clipboard {

/// A key cap that can be clicked: it does what its key does.
class KeyCapButton final : public DrawnButton
{
    Q_OBJECT
public:
    /// `help` says what happens; it is the accessible name and the text of the tip.
    KeyCapButton(const QString& keys, const QString& help, QWidget* parent);

    [[nodiscard]] QSize controlSize() const override;

protected:
    [[nodiscard]] Look look() const override;
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;
};

} // namespace Clipboard
