#include "AppDelegate.h"

#include <QApplication>
#include <QSessionManager>

#include <utility>

namespace Clipboard {

AppDelegate::AppDelegate(QApplication& application, Platform platform, const QString& dataFolder)
    : m_statusItemController(std::move(platform), dataFolder)
    , m_displayLoss(
          &isDisplayLost, [this] { willTerminate(); }, &awaitDisplay)
{
    connect(&application, &QCoreApplication::aboutToQuit, this, &AppDelegate::willTerminate);
    // Autostart brings the program back; a session manager that did so too would start it twice.
    const auto saveForSession = [this](QSessionManager& manager) {
        manager.setRestartHint(QSessionManager::RestartNever);
        m_statusItemController.flush();
    };
    connect(&application, &QGuiApplication::commitDataRequest, this, saveForSession, Qt::DirectConnection);
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::announce()
{
    m_statusItemController.announce();
}

void AppDelegate::keepHistory()
{
    m_statusItemController.keepHistory();
}

void AppDelegate::willTerminate()
{
    m_statusItemController.terminate();
}

} // namespace Clipboard
