#pragma once

#include "Theme.h"

#include <QAbstractButton>

namespace Clipboard {

/// A button that paints itself. The widget is larger than the control it draws by the reach of the focus ring, so that
/// the ring can lie outside the control.
class DrawnButton : public QAbstractButton
{
    Q_OBJECT
public:
    explicit DrawnButton(QWidget* parent = nullptr);

    /// Marks the control as the one that has keyboard focus although its widget has not.
    void setRing(bool ring);
    [[nodiscard]] bool hasRing() const;

    /// The drawn control, in widget coordinates.
    [[nodiscard]] QRect controlRect() const;
    /// Places the widget so that its control covers `control`, in the parent's coordinates.
    void setControlGeometry(const QRect& control);
    /// The control in the coordinates of `ancestor`.
    [[nodiscard]] QRect controlRectIn(const QWidget* ancestor) const;

    /// The size of the control alone.
    [[nodiscard]] virtual QSize controlSize() const = 0;
    [[nodiscard]] QSize sizeHint() const final;
    [[nodiscard]] QSize minimumSizeHint() const final { return sizeHint(); }

protected:
    [[nodiscard]] virtual qreal cornerRadius() const = 0;
    virtual void paintControl(QPainter& painter, const QRectF& control) = 0;
    /// The pointer is over the control and the control is enabled.
    [[nodiscard]] bool isHovered() const { return m_hovered && isEnabled(); }

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) final;
    void changeEvent(QEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const final;

private:
    void setHovered(bool hovered);
    bool m_ring = false;
    bool m_hovered = false;
};

} // namespace Clipboard
