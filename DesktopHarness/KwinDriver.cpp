#include "KwinDriver.h"

#include "VirtualSession.h"

using namespace Qt::StringLiterals;

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

void KwinDriver::click(QPoint place, int times, int button)
{
    movePointer(place);
    for (int i = 0; i < times; ++i) {
        m_hands->setButton(button, true);
        m_hands->setButton(button, false);
    }
}

/// A window has the keyboard before it is painted; until it is, the compositor has the pointer on the one behind it.
void KwinDriver::movePointer(QPoint place)
{
    const std::optional<Window> front = x11().activeWindow();
    const bool isInFront = front && front->geometry.contains(place);
    (void)VirtualSession::waitUntil([&] {
        m_hands->movePointer(place);
        return !isInFront || x11().pointer() == place;
    });
}

void KwinDriver::turnWheel(int notches)
{
    for (int i = 0; i < notches; ++i)
        m_hands->turnWheel();
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

QByteArray KwinDriver::pixels() const
{
    const std::optional<Window> front = x11().activeWindow();
    if (!front)
        return {};
    const QByteArray window =
        session().run(u"import"_s, {u"-silent"_s, u"-window"_s, QString::number(front->id), u"ppm:-"_s}).output;
    const QRect at = front->geometry;
    const QString place = u"+%1+%2"_s.arg(at.x()).arg(at.y());
    const QString black = u"xc:black[%1x%2!]"_s.arg(m_size.width()).arg(m_size.height());
    return session()
        .run(u"convert"_s, {black, u"ppm:-"_s, u"-geometry"_s, place, u"-composite"_s, u"ppm:-"_s}, window)
        .output;
}

void KwinDriver::place(const Window& window, QRect /*geometry*/)
{
    qFatal("Nobody can place the window %s here", qPrintable(window.title));
}

} // namespace Clipboard::Testing
