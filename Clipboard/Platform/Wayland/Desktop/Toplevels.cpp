#include "Toplevels.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <utility>

namespace Clipboard::Wayland {

Toplevels::Toplevels(std::unique_ptr<WaylandConnection> connection)
    : m_connection(std::move(connection))
{
}

bool Toplevels::listen()
{
    auto* notifier = new QSocketNotifier(wl_display_get_fd(m_connection->get()), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        m_connection->serve();
        notifier->setEnabled(!m_connection->isBroken());
    });
    return m_connection->roundTrip();
}

void Toplevels::whenDescribed(std::function<void()> done)
{
    catchUp();
    if (!isAsking())
        return done();
    // Whichever is first, and not in the midst of what the compositor tells.
    const auto once = [this, todo = std::make_shared<std::function<void()>>(std::move(done))] {
        if (const auto now = std::exchange(*todo, nullptr))
            QTimer::singleShot(0, this, now);
    };
    m_connection->whenDone(once);
    m_connection->serve();
    QTimer::singleShot(answerLimit, this, once);
}

void Toplevels::setApplication(Window window, const QString& application)
{
    m_applications[window] = application;
}

void Toplevels::setActive(Window window, bool isActive)
{
    if (isActive) {
        m_active = window;
        if (!isOurs(window))
            m_front = window;
    } else if (m_active == window) {
        m_active = nullptr;
    }
    emit frontChanged();
}

void Toplevels::remove(Window window)
{
    m_applications.erase(window);
    if (m_active == window)
        m_active = nullptr;
    if (m_front == window)
        m_front = nullptr;
    emit frontChanged();
}

bool Toplevels::isOurs(Window window) const
{
    const auto found = m_applications.find(window);
    if (found == m_applications.end())
        return false;
    return found->second.compare(QGuiApplication::desktopFileName(), Qt::CaseInsensitive) == 0 ||
           found->second.compare(QCoreApplication::applicationName(), Qt::CaseInsensitive) == 0;
}

std::optional<QString> Toplevels::frontApplication() const
{
    const auto front = m_applications.find(m_front);
    const bool isKnown = (m_active != nullptr || m_isCovered) && front != m_applications.end();
    return isKnown ? std::optional(front->second) : std::nullopt;
}

QString Toplevels::workOutput() const
{
    const Window window = m_active == nullptr && m_isCovered ? m_front : m_active;
    return window == nullptr ? QString() : outputOf(window);
}

bool Toplevels::isFrontBack() const
{
    return m_front != nullptr && m_active == m_front;
}

} // namespace Clipboard::Wayland
