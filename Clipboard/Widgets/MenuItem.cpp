#include "MenuItem.h"

#include "Painting.h"
#include "Theme.h"
#include "TintedIcon.h"

#include <QAction>
#include <QPainter>

namespace Clipboard::MenuItem {

namespace {

constexpr int itemHeight = 30;
constexpr int itemRadius = 6;
constexpr int separatorHeight = 13; // the line with 6 above and below
constexpr int separatorInset = 10;
constexpr int leftPadding = 8;
constexpr int rightPadding = 10;
constexpr int checkColumn = 16;
constexpr int checkSize = 15;
constexpr qreal checkStroke = 2.2;
constexpr int columnGap = 8;

// What the toolkit looks up to write a shortcut.
[[maybe_unused]] constexpr const char* controlKey = QT_TRANSLATE_NOOP("QShortcut", "Ctrl");

} // namespace

int height(bool isSeparator)
{
    return isSeparator ? separatorHeight : itemHeight;
}

void paint(QPainter& painter, const QRectF& item, const QAction& action, bool highlighted)
{
    if (action.isSeparator()) {
        painter.fillRect(
            QRectF(item.left() + separatorInset, item.top() + menuPadding, item.width() - 2 * separatorInset, 1),
            Theme::seam);
        return;
    }
    if (highlighted && action.isEnabled())
        Painting::roundedFill(painter, item, itemRadius, Theme::rowSel, Theme::rowSelLine);
    const QRectF content = item.adjusted(leftPadding, 0, -rightPadding, 0);
    if (action.isChecked()) {
        drawIcon(painter, QRectF(content.left(), content.top(), checkSize, content.height()),
                 {QLatin1String("check"), checkSize, Theme::accent, checkStroke});
    }
    if (const QByteArray sign = action.data().toByteArray(); !sign.isEmpty()) {
        drawIcon(painter, QRectF(content.left(), content.top(), checkSize, content.height()),
                 {QLatin1String(sign), checkSize, Theme::warning});
    }
    const QString keys = action.shortcut().toString(QKeySequence::NativeText);
    const qreal keysWidth = keys.isEmpty() ? 0 : Fonts::width(Fonts::caption, keys) + 1;
    const QRectF keysBox(content.right() - keysWidth, content.top(), keysWidth, content.height());
    Painting::textLine(painter, keysBox, Fonts::caption, Theme::text2, keys);
    const QRectF label = content.adjusted(checkColumn + columnGap, 0, -keysWidth, 0);
    QString text = action.text();
    text.remove(u'&');
    Painting::textLine(painter, label, Fonts::label, action.isEnabled() ? Theme::text : Theme::textDisabled, text);
}

} // namespace Clipboard::MenuItem
