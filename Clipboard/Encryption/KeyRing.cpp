#include "KeyRing.h"

#include "KeyRequest.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace Clipboard {

KeyRing::KeyRing(QObject* parent)
    : QObject(parent)
    , m_bus(QDBusConnection::sessionBus())
    , m_arrival(SecretService::name, m_bus, QDBusServiceWatcher::WatchForRegistration)
{
    SecretService::registerTypes();
    connect(&m_arrival, &QDBusServiceWatcher::serviceRegistered, this, &KeyRing::changed);
    // Of whoever says so: to name the service here would start it.
    m_bus.connect({}, SecretService::path, SecretService::serviceInterface, u"CollectionChanged"_s, this,
                  SLOT(collectionChanged()));
}

void KeyRing::ask(IfMissing ifMissing, IfLocked ifLocked, std::function<void(const Answer& answer)> answer)
{
    if (m_request)
        m_request->cancel();
    m_request = new KeyRequest(m_bus, ifMissing, ifLocked, std::move(answer), this);
    m_request->start();
}

} // namespace Clipboard
