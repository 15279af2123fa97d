#include "StatusItem.h"

#include "DarkMenu.h"
#include "TintedIcon.h"

#include <QAction>
#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QKeySequence>

#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

/// The sizes that trays ask for, from a bare X11 tray to a panel at twice the usual density.
QIcon trayIcon(const QColor& color)
{
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 44, 48})
        icon.addPixmap(tintedPixmap({"layers"_L1, size, color}, 1));
    return icon;
}

} // namespace

StatusItem::StatusItem(LoginItem loginItem, bool composited, QObject* parent)
    : QObject(parent)
    , m_loginItem(std::move(loginItem))
{
    buildMenu(composited);
    m_icon.setIcon(trayIcon(Theme::text));
    m_icon.setToolTip(u"Tessaly"_s);
    m_icon.setContextMenu(m_menu.get());
    connect(&m_icon, &QSystemTrayIcon::activated, this, &StatusItem::handleActivation);
}

StatusItem::~StatusItem() = default;

void StatusItem::buildMenu(bool composited)
{
    m_menu = std::make_unique<DarkMenu>(composited);
    m_menu->addAction(tr("Clear History…"), this, &StatusItem::clearHistoryChosen);
    m_menu->addSeparator();
    m_launchAtLogin = m_menu->addAction(tr("Launch at Login"), this, [this] { m_loginItem.toggle(); });
    m_launchAtLogin->setCheckable(true);
    m_menu->addSeparator();
    m_menu->addAction(tr("About Tessaly"), this, &StatusItem::aboutChosen);
    m_menu->addSeparator();
    QAction* quit = m_menu->addAction(tr("Quit Tessaly"), this, &StatusItem::quitChosen);
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));

    connect(m_menu.get(), &QMenu::aboutToShow, this, [this] {
        emit menuWillShow();
        m_launchAtLogin->setChecked(m_loginItem.isEnabled());
    });
}

void StatusItem::handleActivation(QSystemTrayIcon::ActivationReason reason)
{
    if (reason != QSystemTrayIcon::Trigger)
        return; // the tray itself opens the menu on a right click
    if (QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier))
        m_menu->popup(QCursor::pos());
    else
        emit clicked();
}

void StatusItem::show()
{
    m_icon.show();
}

void StatusItem::setHighlighted(bool highlighted)
{
    m_icon.setIcon(trayIcon(highlighted ? Theme::accent : Theme::text));
}

void StatusItem::setNotice(const QString& notice)
{
    m_icon.setToolTip(u"Tessaly\n"_s + notice);
}

std::optional<QRect> StatusItem::geometry() const
{
    const QRect rect = m_icon.geometry();
    if (rect.isEmpty())
        return std::nullopt;
    return rect;
}

} // namespace Clipboard
