#pragma once

#include <QElapsedTimer>
#include <QPointF>

class QMouseEvent;

namespace Clipboard {

/// Counts the presses of a multiple click: 2 for the second of a double click, 3 for the third, and so on.
class ClickCounter final
{
public:
    /// Call it with every press, double clicks included.
    [[nodiscard]] int count(const QMouseEvent& press);

private:
    QElapsedTimer m_sinceLast;
    QPointF m_lastPlace;
    int m_count = 0;
};

} // namespace Clipboard
