#include "ClickCounter.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

namespace Clipboard {

int ClickCounter::count(const QMouseEvent& press)
{
    const QStyleHints* hints = QGuiApplication::styleHints();
    const bool isSoon = m_sinceLast.isValid() && m_sinceLast.elapsed() < hints->mouseDoubleClickInterval();
    const QPointF way = press.globalPosition() - m_lastPlace;
    const bool isNear = way.manhattanLength() <= hints->mouseDoubleClickDistance();
    m_count = isSoon && isNear ? m_count + 1 : 1;
    m_sinceLast.start();
    m_lastPlace = press.globalPosition();
    return m_count;
}

} // namespace Clipboard
