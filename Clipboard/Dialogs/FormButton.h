#pragma once

#include "DrawnButton.h"

#include <QAccessible>

namespace Clipboard {

/// A button of a form: something to press, or a choice that is on or off.
class FormButton final : public DrawnButton
{
    Q_OBJECT
public:
    enum class Shape { button, chip, sliding };

    FormButton(const QString& text, Shape shape, QWidget* parent);
    /// Makes it one that is on or off.
    void setIsChoice(QAccessible::Role role);
    /// A drawing in place of the text, which then is the name alone.
    void setSign(QLatin1String sign);

    [[nodiscard]] QSize controlSize() const override;

protected:
    [[nodiscard]] Look look() const override;
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    Shape m_shape;
    QLatin1String m_sign;
};

} // namespace Clipboard
