#include "AppDelegate.h"

#include <QApplication>
#include <QSessionManager>

#include <cstdlib>
#include <utility>

namespace Clipboard {

namespace {

// The toolkit leaves through exit() when the display server goes away, as it does at the end of most sessions.
AppDelegate* runningDelegate = nullptr;

} // namespace

AppDelegate::AppDelegate(QApplication& application, Platform platform, const QString& dataFolder)
    : m_statusItemController(std::move(platform), dataFolder)
{
    connect(&application, &QCoreApplication::aboutToQuit, this, &AppDelegate::willTerminate);
    // Autostart brings the program back; a session manager that did so too would start it twice.
    const auto saveForSession = [this](QSessionManager& manager) {
        manager.setRestartHint(QSessionManager::RestartNever);
        m_statusItemController.flush();
    };
    connect(&application, &QGuiApplication::commitDataRequest, this, saveForSession, Qt::DirectConnection);

    runningDelegate = this;
    std::atexit([] {
        if (runningDelegate)
            runningDelegate->willTerminate();
    });
}

AppDelegate::~AppDelegate()
{
    runningDelegate = nullptr;
}

void AppDelegate::announce()
{
    m_statusItemController.announce();
}

void AppDelegate::willTerminate()
{
    m_statusItemController.terminate();
}

} // namespace Clipboard
