#include "HoverTip.h"

#include "Accessibility.h"
#include "KeyCap.h"
#include "Painting.h"
#include "Theme.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Clipboard {

namespace {

constexpr int tipHeight = 28;
constexpr int padding = 8;
constexpr int capGap = 8;
constexpr int distance = 6; // from the control
constexpr int edgeGap = 8;  // to the window's sides

int tipWidth(const QString& text, const QString& keys)
{
    const qreal cap = keys.isEmpty() ? 0 : capGap + KeyCap::size(keys).width();
    return static_cast<int>(std::ceil(2 * padding + Fonts::width(Fonts::caption, text) + cap));
}

} // namespace

HoverTip::HoverTip(const QString& text, const QString& keys, const QRect& control, QWidget* window)
    : QWidget(window)
    , m_text(text)
    , m_keys(keys)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    Accessibility::setRole(this, QAccessible::ToolTip);
    setAccessibleName(text);
    const int width = tipWidth(text, keys);
    const QRect room = window->contentsRect().adjusted(edgeGap, 0, -edgeGap, 0);
    const int rightmost = std::max(room.left(), room.right() + 1 - width);
    const int left = std::clamp(control.center().x() - width / 2, room.left(), rightmost);
    const int above = control.top() - distance - tipHeight;
    const int top = above >= room.top() ? above : control.bottom() + 1 + distance;
    setGeometry(left, top, width, tipHeight);
    raise();
    show();
}

void HoverTip::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    Painting::roundedFill(painter, rect(), Theme::buttonRadius, Theme::tip, Theme::tipLine);
    const QRectF line = QRectF(rect()).adjusted(padding, 0, 0, 0);
    Painting::textLine(painter, line, Fonts::caption, Theme::text, m_text);
    const QSizeF cap = KeyCap::size(m_keys);
    KeyCap::draw(painter, {width() - padding - cap.width(), (height() - cap.height()) / 2}, m_keys, KeyCap::tooltip);
}

} // namespace Clipboard
