#pragma once

#include <QWidget>

class QScrollBar;

namespace Clipboard {

/// A thin thumb without track that lies over the content, shown while there is more than fits. It mirrors a scroll bar
/// of either direction that itself stays hidden, and can be dragged.
class OverlayScrollBar final : public QWidget
{
    Q_OBJECT
public:
    /// The thumb's width; the widget is a little wider so that it can be caught.
    static constexpr int thumbWidth = 4;
    static constexpr int grabWidth = 10;

    OverlayScrollBar(QScrollBar* source, QWidget* parent);

    /// The thumb in widget coordinates.
    [[nodiscard]] QRectF thumb() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    struct Stretch
    {
        qreal start = 0;
        qreal length = 0;
        qreal travel = 0; // of the start, from the least value to the greatest
    };
    void sourceChanged();
    [[nodiscard]] bool isUpright() const;
    [[nodiscard]] Stretch thumbStretch() const;
    [[nodiscard]] qreal placeAlong(const QMouseEvent* event) const;

    QScrollBar* m_source;
    qreal m_grabOffset = 0;
};

} // namespace Clipboard
