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

} // namespace Clipboard::Testing
