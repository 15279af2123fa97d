#include "KwinDriver.h"

#include "VirtualSession.h"

#include <QFile>

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

/// The compositor writes a file, which nobody else removes.
QByteArray KwinDriver::picture(QRect part) const
{
    QStringList call =
        u"--print-reply=literal --dest=org.kde.KWin /Screenshot org.kde.kwin.Screenshot.screenshotArea"_s.split(u' ');
    for (const int number : {part.x(), part.y(), part.width(), part.height()})
        call.append(u"int32:%1"_s.arg(number));
    const auto file = QString::fromLocal8Bit(session().run(u"dbus-send"_s, call).output.trimmed());
    QByteArray picture = session().run(u"convert"_s, {file, u"ppm:-"_s}).output;
    QFile::remove(file);
    return picture;
}

void KwinDriver::place(const Window& window, QRect /*geometry*/)
{
    qFatal("Nobody can place the window %s here", qPrintable(window.title));
}

} // namespace Clipboard::Testing
