#include "ToastPresenter.h"

#include "Accessibility.h"
#include "ToastView.h"
#include "WindowSystem.h"

#include <QGuiApplication>
#include <QScreen>

namespace Clipboard {

namespace {

constexpr std::chrono::milliseconds visibleTime{1900};

ToastPresenter* sharedPresenter = nullptr;

} // namespace

ToastPresenter::ToastPresenter(WindowSystem& windows, QObject* parent)
    : QObject(parent)
    , m_windows(windows)
{
    Q_ASSERT(sharedPresenter == nullptr);
    sharedPresenter = this;
    m_hideTimer.setSingleShot(true);
    m_hideTimer.setTimerType(Qt::PreciseTimer);
    m_hideTimer.setInterval(visibleTime);
    connect(&m_hideTimer, &QTimer::timeout, this, &ToastPresenter::hide);
}

ToastPresenter::~ToastPresenter()
{
    sharedPresenter = nullptr;
}

ToastPresenter& ToastPresenter::shared()
{
    Q_ASSERT(sharedPresenter != nullptr);
    return *sharedPresenter;
}

void ToastPresenter::show(const ClipboardCore::ToastText& text)
{
    replace(text);
    m_hideTimer.start();
    emit shown(text);
}

void ToastPresenter::showUntilNext(const QString& text)
{
    replace(text);
    m_hideTimer.stop();
    emit shown(text);
}

void ToastPresenter::replace(const ClipboardCore::ToastText& text)
{
    m_view = std::make_unique<ToastView>(text, m_windows.isCompositing());
    const QScreen* screen = m_windows.workScreen();
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    if (screen != nullptr)
        m_view->placeIn(screen->availableGeometry());
    m_view->winId(); // makes the native window, for the next lines
    m_windows.prepare(m_view->windowHandle(), WindowSystem::Role::notice);
    m_windows.setShadow(m_view->windowHandle(), m_view->shadow());
    if (m_windows.canFade())
        m_view->fadeIn();
    m_view->show();
    Accessibility::announce(m_view.get());
}

void ToastPresenter::hide()
{
    const auto close = [this] {
        m_view->hide();
        m_view.release()->deleteLater(); // it may be in the middle of its own signal
        emit hidden();
    };
    if (m_windows.canFade())
        m_view->fadeOut(close);
    else
        close();
}

} // namespace Clipboard
