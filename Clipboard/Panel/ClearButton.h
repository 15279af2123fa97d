#pragma once

#include "DrawnButton.h"

namespace Clipboard {

/// The sign in the search field that empties it.
class ClearButton final : public DrawnButton
{
    Q_OBJECT
public:
    explicit ClearButton(QWidget* parent);
    [[nodiscard]] QSize controlSize() const override { return {size, size}; }

protected:
    [[nodiscard]] qreal cornerRadius() const override { return size / 2.0; }
    void paintControl(QPainter& painter, const QRectF& control) override;

private:
    static constexpr int size = 16;
};

} // namespace Clipboard
