#include "DarkMenu.h"

#include "MenuItem.h"
#include "Painting.h"
#include "Surface.h"
#include "Theme.h"

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
            return MenuItem::menuPadding;
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
        return {MenuItem::menuWidth - 2 * MenuItem::menuPadding, MenuItem::height(separator)};
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
    setFixedWidth(MenuItem::menuWidth);
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
        item.setWidth(width() - 2 * MenuItem::menuPadding);
        if (action->isVisible() && event->rect().intersects(item.toAlignedRect()))
            MenuItem::paint(painter, item, *action, action == activeAction());
    }
}

} // namespace Clipboard
