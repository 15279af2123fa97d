#pragma once

#include "DrawnButton.h"

namespace Clipboard {

/// A full-width button of a dialog, with the key that presses it at its right end.
class DialogButton final : public DrawnButton
{
    Q_OBJECT
public:
    static constexpr int height = 36;

    DialogButton(const QString& text, QString keys, bool destructive, QWidget* parent);

    [[nodiscard]] QSize controlSize() const override;

protected:
    [[nodiscard]] Look look() const override;
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;

private:
    QString m_keys;
    bool m_destructive;
};

} // namespace Clipboard
