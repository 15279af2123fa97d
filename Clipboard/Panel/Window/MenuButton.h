#pragma once

#include "DrawnButton.h"

namespace Clipboard {

/// Opens the program's menu.
class MenuButton final : public DrawnButton
{
    Q_OBJECT
public:
    explicit MenuButton(QWidget* parent);

    [[nodiscard]] QSize controlSize() const override;

protected:
    [[nodiscard]] Look look() const override;
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;
};

} // namespace Clipboard
