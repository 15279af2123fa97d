#include "WaylandDriver.h"

#include "VirtualSession.h"
#include "WaylandOwner.h"

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

namespace {

/// Plain text goes by another name here; its clients offer it under all that it has.
QStringList typeOption(const QString& target)
{
    return {u"--type"_s, target == "UTF8_STRING"_L1 ? u"text/plain"_s : target};
}

} // namespace

WaylandDriver::WaylandDriver(VirtualSession& session)
    : m_session(session)
    , m_x11(session)
{
}

void WaylandDriver::press(const QStringList& chords)
{
    for (const QString& chord : chords)
        keyboard().press(chord);
}

void WaylandDriver::type(const QString& text)
{
    keyboard().type(text);
}

void WaylandDriver::drag(const QList<QPoint>& path)
{
    movePointer(path.first());
    pressButton();
    for (const QPoint place : path.sliced(1))
        movePointer(place);
    releaseButton();
}

void WaylandDriver::copy(const QByteArray& content, const QString& target)
{
    m_session.run(u"wl-copy"_s, typeOption(target), content);
}

std::unique_ptr<ForeignOwner> WaylandDriver::otherProgram()
{
    return std::make_unique<WaylandOwner>(m_session);
}

QByteArray WaylandDriver::pasted(const QString& target)
{
    return m_session.run(u"wl-paste"_s, QStringList{u"--no-newline"_s} + typeOption(target)).output;
}

QList<WaylandDriver::Window> WaylandDriver::unlisted(const QList<Window>& reported) const
{
    QList<Window> found = reported;
    found.removeIf([this](const Window& window) { return !isPainted(window.geometry); });
    return found;
}

bool WaylandDriver::isPainted(QRect place) const
{
    constexpr qsizetype pixel = 3; // bytes, without alpha
    const QByteArray shown = picture(place);
    const QByteArray pixels = shown.mid(shown.indexOf("255\n") + 4); // what ends the header
    // Of one colour is what looks the same when it is moved by a pixel.
    return pixels.size() > pixel && pixels.sliced(pixel) != pixels.chopped(pixel);
}

} // namespace Clipboard::Testing
