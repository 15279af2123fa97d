#pragma once

#include "LoginItem.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QSystemTrayIcon>

#include <memory>
#include <optional>

class QAction;
class QMenu;

namespace Clipboard {

/// The icon in the desktop's tray and its menu. It docks as soon as there is a tray; nothing depends on it. Main thread
/// only.
class StatusItem final : public QObject
{
    Q_OBJECT
public:
    /// `composited`: see WindowSystem::isCompositing().
    StatusItem(LoginItem loginItem, bool composited, QObject* parent = nullptr);
    ~StatusItem() override;

    void show();
    /// Shows that the panel is open.
    void setHighlighted(bool highlighted);
    /// Shows that nothing is recorded.
    void setPaused(bool paused);
    /// The key that opens the panel, as it is shown; empty when none does.
    void setHotKey(const QString& shown);
    /// What does not work, and why: further lines of the tooltip, and items on top of the menu.
    void setNotices(const QStringList& notices);
    /// The items of the menu, for another one of the same content.
    [[nodiscard]] QList<QAction*> menuActions();
    /// In global coordinates; nothing when the tray does not tell.
    [[nodiscard]] std::optional<QRect> geometry() const;

signals:
    /// A plain click.
    void clicked();
    void menuWillShow();
    void showHistoryChosen();
    void clearHistoryChosen();
    void pauseChosen();
    void preferencesChosen();
    void aboutChosen();
    void quitChosen();
    /// The menu may have had room for its beginning only.
    void noticeChosen(const QString& notice);

private:
    void buildMenu(bool composited);
    void updateIcon();
    void updateToolTip();
    void handleActivation(QSystemTrayIcon::ActivationReason reason);

    LoginItem m_loginItem;
    std::unique_ptr<QMenu> m_menu;
    QAction* m_launchAtLogin = nullptr;
    QAction* m_pause = nullptr;
    QString m_hotKey;
    QStringList m_notices;
    QList<QAction*> m_noticeActions;
    bool m_isHighlighted = false;
    bool m_isPaused = false;
    bool m_isShown = false;
    QSystemTrayIcon m_icon{this};
};

} // namespace Clipboard
