#pragma once

#include "Theme.h"

#include <QAbstractButton>
#include <QBasicTimer>
#include <QPointer>

namespace Clipboard {

class HoverTip;

/// A button that paints itself. The widget is larger than the control it draws by the reach of the focus ring, so that
/// the ring can lie outside the control.
class DrawnButton : public QAbstractButton
{
    Q_OBJECT
public:
    explicit DrawnButton(QWidget* parent = nullptr);
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
    [[nodiscard]] virtual qreal cornerRadius() const = 0;
    virtual void paintControl(QPainter& painter, const QRectF& control) = 0;
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

    bool m_ring = false;
    bool m_hovered = false;
    QString m_tipText;
    QString m_tipKeys;
    QBasicTimer m_tipTimer;
    QPointer<HoverTip> m_tip;
};

} // namespace Clipboard
