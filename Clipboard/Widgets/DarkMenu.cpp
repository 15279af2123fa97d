#include "DarkMenu.h"

#include "Painting.h"
#include "Surface.h"
#include "Theme.h"
#include "TintedIcon.h"

#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

constexpr int menuWidth = 232;
constexpr int padding = 6;
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

/// Gives the menu its measures; the painting is the menu's own.
class MenuMetrics final : public QProxyStyle
{
public:
    MenuMetrics()
        : QProxyStyle(QStyleFactory::create(u"fusion"_s))
    {
    }
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        switch (metric) {
        case PM_MenuHMargin:
        case PM_MenuVMargin:
            return padding;
        case PM_MenuPanelWidth:
        case PM_MenuDesktopFrameWidth:
            return 0;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                         const QWidget* widget) const override
    {
        if (type != CT_MenuItem)
            return QProxyStyle::sizeFromContents(type, option, size, widget);
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        const bool separator = item != nullptr && item->menuItemType == QStyleOptionMenuItem::Separator;
        return {menuWidth - 2 * padding, separator ? separatorHeight : itemHeight};
    }
};

} // namespace

DarkMenu::DarkMenu(bool composited, QWidget* parent)
    : QMenu(parent)
    , m_composited(composited)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    if (composited)
        Surface::prepare(this);
    // Qt widens its items by the shortcuts' column; here the shortcuts have their place inside.
    setFixedWidth(menuWidth);
    auto* metrics = new MenuMetrics;
    metrics->setParent(this);
    setStyle(metrics);
}

void DarkMenu::keyPressEvent(QKeyEvent* event)
{
    const QKeySequence keys(event->keyCombination());
    const QList<QAction*> all = actions();
    const auto chosen = std::ranges::find_if(all, [&keys](const QAction* action) {
        return action->isVisible() && action->isEnabled() && action->shortcut() == keys;
    });
    if (chosen == all.end())
        return QMenu::keyPressEvent(event);
    const QPointer<QAction> action = *chosen; // what closes with the menu may end it
    close();
    if (action)
        action->trigger();
}

void DarkMenu::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const qreal radius = m_composited ? Theme::menuRadius : 0;
    Painting::roundedFill(painter, rect(), radius, Theme::raised, Theme::outline);
    const QList<QAction*> all = actions();
    for (const QAction* action : all) {
        QRectF item(actionGeometry(const_cast<QAction*>(action)));
        item.setWidth(width() - 2 * padding);
        if (action->isVisible() && event->rect().intersects(item.toAlignedRect()))
            paintItem(painter, item, *action, action == activeAction());
    }
}

void DarkMenu::paintItem(QPainter& painter, const QRectF& item, const QAction& action, bool highlighted) const
{
    if (action.isSeparator()) {
        painter.fillRect(
            QRectF(item.left() + separatorInset, item.top() + padding, item.width() - 2 * separatorInset, 1),
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

} // namespace Clipboard
