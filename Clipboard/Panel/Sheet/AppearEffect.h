#pragma once

#include <QGraphicsEffect>

namespace Clipboard {

/// Draws a widget faded and scaled about its centre, for as long as it is appearing; costs nothing once disabled.
class AppearEffect final : public QGraphicsEffect
{
    Q_OBJECT
public:
    using QGraphicsEffect::QGraphicsEffect;

    /// From 0, faint and a little smaller, to 1, as it is.
    void setProgress(qreal progress);

protected:
    void draw(QPainter* painter) override;

private:
    qreal m_progress = 1;
};

} // namespace Clipboard
