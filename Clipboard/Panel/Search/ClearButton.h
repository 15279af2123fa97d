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
    [[nodiscard]] Look look() const override;
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;

private:
    static constexpr int size = 16;
};

} // namespace Clipboard
