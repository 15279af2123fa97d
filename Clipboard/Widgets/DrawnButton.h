#pragma once

#include "Theme.h"

#include <QAbstractButton>
#include <QBasicTimer>
#include <QPointer>

namespace Clipboard {

class HoverTip;

/// A button that paints itself: a rounded ground in the colours of its state, its content on it, and the focus ring.
/// The widget is larger than the control it draws by the reach of the ring, which lies outside the control.
class DrawnButton : public QAbstractButton
{
    Q_OBJECT
public:
    DrawnButton(qreal cornerRadius, QWidget* parent);
    ~DrawnButton() override;

    /// Marks the control as the one that has keyboard focus although its widget has not.
    void setRing(bool ring);
    [[nodiscard]] bool hasRing() const;

    /// The drawn control, in widget coordinates.
    [[nodiscard]] QRect controlRect() const;
    /// Places the widget so that its control covers `control`, in the parent's coordinates.
    void setControlGeometry(const QRect& control);
    /// The control in the coordinates of `ancestor`.
    [[nodiscard]] QRect controlRectIn(const QWidget* ancestor) const;

    /// What appears when the pointer rests on the control: its name and its key, which may be empty.
    void setTip(const QString& text, const QString& keys);

    /// The size of the control alone.
    [[nodiscard]] virtual QSize controlSize() const = 0;
    [[nodiscard]] QSize sizeHint() const final;
    [[nodiscard]] QSize minimumSizeHint() const final { return sizeHint(); }

protected:
    /// The colours of the control in a state; those that are not valid are not drawn.
    struct Look
    {
        QColor fill;
        QColor line; // one pixel inside the edge
        QColor label;
        QColor sign; // of what stands beside the label
    };
    [[nodiscard]] virtual Look look() const = 0;
    virtual void paintContent(QPainter& painter, const QRectF& control, const Look& look) = 0;
    /// What the tip keeps clear of, in the coordinates of the window: the control, unless more is said.
    [[nodiscard]] virtual QRect tipAnchor() const { return controlRectIn(window()); }
    /// The fill of an ordinary control: at rest, under the pointer or pressed.
    [[nodiscard]] QColor controlFill() const;
    /// The pointer is over the control and the control is enabled.
    [[nodiscard]] bool isHovered() const { return m_hovered && isEnabled(); }

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) final;
    void changeEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const final;

private:
    void setHovered(bool hovered);
    void hideTip();

    qreal m_cornerRadius;
    bool m_ring = false;
    bool m_hovered = false;
    QString m_tipText;
    QString m_tipKeys;
    QBasicTimer m_tipTimer;
    QPointer<HoverTip> m_tip;
};

} // namespace Clipboard
