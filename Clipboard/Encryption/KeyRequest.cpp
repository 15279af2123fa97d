#include "KeyRequest.h"

#include "SodiumSeal.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

using Path = QDBusObjectPath;
using SecretService::Attributes;
using SecretService::Secret;

const Attributes attributes{{u"xdg:schema"_s, u"com.tessaly.HistoryKey"_s},
                            {u"application"_s, u"com.tessaly.Tessaly"_s}};
constexpr QLatin1String contentType("application/octet-stream");

QString problemOf(const QDBusError& error)
{
    if (error.type() == QDBusError::ServiceUnknown || error.type() == QDBusError::Disconnected ||
        error.name().startsWith("org.freedesktop.DBus.Error.Spawn"_L1))
        return KeyRequest::tr("This session has no keyring, such as that of GNOME or KDE.");
    return KeyRequest::tr("The keyring fails: %1").arg(error.message());
}

Path pathIn(const QVariantList& reply, qsizetype position)
{
    return reply.value(position).value<Path>();
}

bool isNothing(const Path& path)
{
    return path.path().isEmpty() || path.path() == SecretService::nothing;
}

} // namespace

KeyRequest::KeyRequest(QDBusConnection bus, KeyRing::IfMissing ifMissing, KeyRing::IfLocked ifLocked,
                       std::function<void(const KeyRing::Answer&)> answer, QObject* parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_ifMissing(ifMissing)
    , m_ifLocked(ifLocked)
    , m_answer(std::move(answer))
{
}

/// A session that hands secrets over as they are: who can read along on the bus can ask for them as well.
void KeyRequest::start()
{
    call(SecretService::path, SecretService::serviceInterface, u"OpenSession"_s,
         {u"plain"_s, QVariant::fromValue(QDBusVariant(QString()))}, [this](const QVariantList& reply) {
             m_session = pathIn(reply, 1);
             search();
         });
}

void KeyRequest::call(const QString& path, QLatin1String interface, const QString& method,
                      const QVariantList& arguments, std::function<void(const QVariantList& reply)> then)
{
    auto message = QDBusMessage::createMethodCall(SecretService::name, path, interface, method);
    message.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, patience()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, then = std::move(then)] {
        watcher->deleteLater();
        const QDBusPendingReply<> reply = *watcher;
        if (reply.isError())
            fail(problemOf(reply.error()));
        else
            then(reply.reply().arguments());
    });
}

/// In ms. What is locked waits for its key for as long as that takes; who asked for a new one wants to know.
int KeyRequest::patience() const
{
    return m_ifMissing == KeyRing::IfMissing::leave ? std::numeric_limits<int>::max() : -1;
}

void KeyRequest::search()
{
    call(SecretService::path, SecretService::serviceInterface, u"SearchItems"_s, {QVariant::fromValue(attributes)},
         [this](const QVariantList& reply) {
             take(qdbus_cast<QList<Path>>(reply.value(0)), qdbus_cast<QList<Path>>(reply.value(1)));
         });
}

void KeyRequest::take(const QList<Path>& unlocked, const QList<Path>& locked)
{
    if (!unlocked.isEmpty())
        return read(unlocked.first());
    if (!locked.isEmpty())
        return unlock(locked.first(), [this, item = locked.first()] { read(item); });
    if (m_ifMissing == KeyRing::IfMissing::create && m_created.isEmpty())
        return create();
    fail(tr("The keyring does not have its key."));
}

void KeyRequest::unlock(const Path& object, Next then)
{
    if (m_ifLocked == KeyRing::IfLocked::leave)
        return fail(tr("The keyring is locked."));
    call(SecretService::path, SecretService::serviceInterface, u"Unlock"_s, {QVariant::fromValue(QList<Path>{object})},
         [this, then = std::move(then)](const QVariantList& reply) { prompt(pathIn(reply, 1), then); });
}

/// Has the service ask the user, when it has something to ask.
void KeyRequest::prompt(const Path& prompt, Next then)
{
    if (isNothing(prompt))
        return then();
    m_afterPrompt = std::move(then);
    m_bus.connect({}, prompt.path(), SecretService::promptInterface, u"Completed"_s, this,
                  SLOT(prompted(bool, QDBusVariant)));
    call(prompt.path(), SecretService::promptInterface, u"Prompt"_s, {QString()}, [](const QVariantList&) {});
}

void KeyRequest::prompted(bool isDismissed, const QDBusVariant& /*result*/)
{
    if (isDismissed)
        return fail(tr("The keyring was not unlocked."));
    if (const Next then = std::exchange(m_afterPrompt, {}))
        then();
}

void KeyRequest::create()
{
    call(SecretService::path, SecretService::serviceInterface, u"ReadAlias"_s, {u"default"_s},
         [this](const QVariantList& reply) {
             const Path collection = pathIn(reply, 0);
             if (isNothing(collection))
                 return fail(tr("There is no keyring that takes new keys."));
             unlock(collection, [this, collection] { createIn(collection); });
         });
}

void KeyRequest::createIn(const Path& collection)
{
    m_created = SodiumSeal::newKey();
    const QVariantMap properties{{u"org.freedesktop.Secret.Item.Label"_s, tr("Key of Tessaly’s clipboard history")},
                                 {u"org.freedesktop.Secret.Item.Attributes"_s, QVariant::fromValue(attributes)}};
    const Secret secret{m_session, {}, m_created, contentType};
    call(collection.path(), SecretService::collectionInterface, u"CreateItem"_s,
         {properties, QVariant::fromValue(secret), false}, [this](const QVariantList& reply) {
             const Path item = pathIn(reply, 0);
             prompt(pathIn(reply, 1), [this, item] { isNothing(item) ? search() : read(item); });
         });
}

void KeyRequest::read(const Path& item)
{
    call(item.path(), SecretService::itemInterface, u"GetSecret"_s, {QVariant::fromValue(m_session)},
         [this](const QVariantList& reply) {
             const QByteArray key = qdbus_cast<Secret>(reply.value(0)).value;
             if (key.size() != SodiumSeal::keySize || (!m_created.isEmpty() && key != m_created))
                 return fail(tr("The keyring does not give back what it was given."));
             finish({key});
         });
}

void KeyRequest::cancel()
{
    m_answer = {};
    deleteLater();
}

void KeyRequest::finish(const KeyRing::Answer& answer)
{
    deleteLater();
    if (const auto tell = std::exchange(m_answer, {}))
        tell(answer);
}

} // namespace Clipboard
