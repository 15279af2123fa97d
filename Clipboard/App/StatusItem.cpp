#include "StatusItem.h"

#include "DarkMenu.h"
#include "TintedIcon.h"

#include <QAction>
#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QKeySequence>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <array>
#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

// From a bare X11 tray to a desktop's panel at twice the usual density.
constexpr std::array traySizes{16, 22, 24, 32, 44, 48};

constexpr qreal pausedOpacity = 0.45;

/// Two bars at the bottom right, dark around like the drawing.
void drawPauseSign(QPainter& painter, const QRectF& square)
{
    const qreal unit = square.width() / 16;
    painter.setPen(QPen(Qt::black, unit));
    painter.setBrush(Theme::warning);
    for (const qreal x : {8.5, 12.5})
        painter.drawRect(QRectF(square.x() + x * unit, square.y() + 8 * unit, 2.5 * unit, 7 * unit));
}

/// Most of the square, in pixels that leave as many on each side: a drawing between two pixels is blurred.
int drawingSize(int square)
{
    constexpr qreal share = 17.0 / 22.0;
    const int size = qRound(square * share);
    return (square - size) % 2 == 0 ? size : size + 1;
}

/// While the panel is open the drawing stands on a light ground. Panels are light or dark, and do not say which: a dark
/// rim of whole pixels keeps the drawing visible on both.
QPixmap trayPixmap(int size, bool highlighted, bool paused)
{
    constexpr qreal rimOpacity = 0.6;
    const int rim = std::max(1, qRound(size / 22.0));
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    if (highlighted) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, 0x29));
        painter.drawRoundedRect(pixmap.rect(), size / 5.0, size / 5.0);
    }
    const auto drawing = [size](const QColor& color) { return TintedIcon{"layers"_L1, drawingSize(size), color}; };
    const QRectF square(0, 0, size, size);
    painter.setOpacity(rimOpacity);
    for (const QPointF& offset : {QPointF(-1, 0), QPointF(1, 0), QPointF(0, -1), QPointF(0, 1)})
        drawIcon(painter, square.translated(offset * rim), drawing(Qt::black));
    painter.setOpacity(paused ? pausedOpacity : 1);
    drawIcon(painter, square, drawing(Theme::text));
    painter.setOpacity(1);
    if (paused)
        drawPauseSign(painter, square);
    return pixmap;
}

QIcon trayIcon(bool highlighted, bool paused)
{
    QIcon icon;
    for (const int size : traySizes)
        icon.addPixmap(trayPixmap(size, highlighted, paused));
    return icon;
}

} // namespace

StatusItem::StatusItem(LoginItem loginItem, bool composited, QObject* parent)
    : QObject(parent)
    , m_loginItem(std::move(loginItem))
{
    buildMenu(composited);
    updateToolTip();
    m_icon.setContextMenu(m_menu.get());
    connect(&m_icon, &QSystemTrayIcon::activated, this, &StatusItem::handleActivation);
}

StatusItem::~StatusItem() = default;

void StatusItem::buildMenu(bool composited)
{
    m_menu = std::make_unique<DarkMenu>(composited);
    m_menu->addAction(tr("Show History"), this, &StatusItem::showHistoryChosen);
    m_menu->addSeparator();
    m_menu->addAction(tr("Clear History…"), this, &StatusItem::clearHistoryChosen);
    m_menu->addSeparator();
    m_launchAtLogin = m_menu->addAction(tr("Launch at Login"), this, [this] { m_loginItem.toggle(); });
    m_launchAtLogin->setCheckable(true);
    m_pause = m_menu->addAction(tr("Pause Recording"), this, &StatusItem::pauseChosen);
    QAction* preferences = m_menu->addAction(tr("Preferences…"), this, &StatusItem::preferencesChosen);
    preferences->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
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

QList<QAction*> StatusItem::menuActions()
{
    m_launchAtLogin->setChecked(m_loginItem.isEnabled());
    return m_menu->actions();
}

void StatusItem::handleActivation(QSystemTrayIcon::ActivationReason reason)
{
    // A second click soon after the first comes as a double click. The tray itself opens the menu on a right click.
    if (reason != QSystemTrayIcon::Trigger && reason != QSystemTrayIcon::DoubleClick)
        return;
    if (QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier))
        m_menu->popup(QCursor::pos());
    else
        emit clicked();
}

void StatusItem::show()
{
    m_isShown = true;
    updateIcon();
    m_icon.show();
}

void StatusItem::setHighlighted(bool highlighted)
{
    m_isHighlighted = highlighted;
    updateIcon();
}

void StatusItem::setPaused(bool paused)
{
    m_isPaused = paused;
    m_pause->setText(paused ? tr("Resume Recording") : tr("Pause Recording"));
    updateIcon();
}

void StatusItem::updateIcon()
{
    if (m_isShown)
        m_icon.setIcon(trayIcon(m_isHighlighted, m_isPaused));
}

void StatusItem::setHotKey(const QString& shown)
{
    m_hotKey = shown;
    updateToolTip();
}

void StatusItem::updateToolTip()
{
    const QString name = m_hotKey.isEmpty() ? u"Tessaly"_s : u"Tessaly — "_s + m_hotKey;
    m_icon.setToolTip((QStringList(name) + m_notices).join(u'\n'));
}

void StatusItem::setNotices(const QStringList& notices)
{
    m_notices = notices;
    updateToolTip();
    qDeleteAll(std::exchange(m_noticeActions, {}));
    if (notices.isEmpty())
        return;
    QAction* first = m_menu->actions().first();
    for (const QString& notice : notices) {
        auto* action = new QAction(notice, m_menu.get());
        action->setData(u"warn"_s);
        connect(action, &QAction::triggered, this, [this, notice] { emit noticeChosen(notice); });
        m_noticeActions.append(action);
    }
    m_menu->insertActions(first, m_noticeActions);
    m_noticeActions.append(m_menu->insertSeparator(first));
}

std::optional<QRect> StatusItem::geometry() const
{
    const QRect rect = m_icon.geometry();
    if (rect.isEmpty())
        return std::nullopt;
    return rect;
}

} // namespace Clipboard
