#include "KwinDriver.h"

#include "VirtualSession.h"

namespace Clipboard::Testing {

KwinDriver::KwinDriver(VirtualSession& session, QSize size)
    : WaylandDriver(session)
    , m_size(size)
{
}

bool KwinDriver::plugIn()
{
    m_hands = std::make_unique<FakeInput>(session());
    m_windows = std::make_unique<PlasmaWindows>(session());
    return m_hands->isPluggedIn();
}

void KwinDriver::movePointer(QPoint place)
{
    m_hands->movePointer(place);
}

void KwinDriver::click(QPoint place, int times, int button)
{
    point(place);
    for (int i = 0; i < times; ++i) {
        m_hands->setButton(button, true);
        m_hands->setButton(button, false);
    }
}

/// A window has the keyboard before it is painted; until it is, the compositor has the pointer on the one behind it.
void KwinDriver::point(QPoint place)
{
    const std::optional<Window> front = x11().activeWindow();
    const bool isInFront = front && front->geometry.contains(place);
    (void)VirtualSession::waitUntil([&] {
        movePointer(place);
        return !isInFront || x11().pointer() == place;
    });
}

void KwinDriver::pressButton()
{
    m_hands->setButton(1, true);
}

void KwinDriver::releaseButton()
{
    m_hands->setButton(1, false);
}

QStringList KwinDriver::terminal(const QString& title, const QString& command) const
{
    return x11().terminal(title, command);
}

QList<KwinDriver::Window> KwinDriver::windowsOf(const QByteArray& program) const
{
    QList<Window> found;
    for (const PlasmaWindows::Entry& entry : m_windows->all()) {
        if (entry.application.contains(QLatin1StringView(program), Qt::CaseInsensitive))
            found.append(entry.window);
    }
    for (const Window& window : x11().windowsOf(program)) {
        if (window.isUnmanaged)
            found.append(window);
    }
    return found;
}

std::optional<KwinDriver::Window> KwinDriver::activeWindow() const
{
    for (const PlasmaWindows::Entry& entry : m_windows->all()) {
        if (entry.isActive)
            return entry.window;
    }
    return {};
}

void KwinDriver::place(const Window& window, QRect /*geometry*/)
{
    qFatal("Nobody can place the window %s here", qPrintable(window.title));
}

} // namespace Clipboard::Testing
