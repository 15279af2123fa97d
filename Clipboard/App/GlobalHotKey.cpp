#include "GlobalHotKey.h"

#include "ChordText.h"
#include "HotKeyGrabber.h"

#include <utility>

namespace Clipboard {

GlobalHotKey::GlobalHotKey(HotKeyGrabber& grabber, std::function<void()> action, QObject* parent)
    : QObject(parent)
    , m_grabber(grabber)
{
    connect(&grabber, &HotKeyGrabber::pressed, this, std::move(action));
    connect(&grabber, &HotKeyGrabber::granted, this, [this] { become({}); });
    connect(&grabber, &HotKeyGrabber::failed, this,
            [this](const QString& reason) { become(QString(reason).replace(QLatin1String("%1"), shown())); });
}

void GlobalHotKey::bind(const ClipboardCore::KeyChord& chord)
{
    m_grabber.setChord(chord);
    m_grabber.grab();
    emit changed();
}

QString GlobalHotKey::shown() const
{
    return shownChord(m_grabber.bound());
}

void GlobalHotKey::become(const QString& problem)
{
    const bool isSame = std::exchange(m_problem, problem) == problem;
    if (std::exchange(m_bound, m_grabber.bound()) != m_grabber.bound() || !isSame)
        emit changed();
}

} // namespace Clipboard
