#include "KGlobalAccelHotKey.h"

#include "KeySequence.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QKeySequence>
#include <QLoggingCategory>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

Q_LOGGING_CATEGORY(timing, "tessaly.timing", QtWarningMsg)

constexpr QLatin1String serviceName("org.kde.kglobalaccel");
constexpr QLatin1String objectPath("/kglobalaccel");
constexpr QLatin1String interfaceName("org.kde.KGlobalAccel");
constexpr QLatin1String componentInterface("org.kde.kglobalaccel.Component");

// The compositor answers it between two frames. One that does not answer at all shows no panel either.
constexpr std::chrono::milliseconds callLimit{5000};
// The program ends, and at the end of a session the compositor as well.
constexpr std::chrono::milliseconds lastCallLimit{500};

// How the toolkit writes what is called otherwise here.
struct Spelling
{
    QLatin1String ours;
    QLatin1String toolkits;
};
constexpr std::array spellings{Spelling{"Super"_L1, "Meta"_L1}, Spelling{"PageUp"_L1, "PgUp"_L1},
                               Spelling{"PageDown"_L1, "PgDown"_L1}, Spelling{"Insert"_L1, "Ins"_L1},
                               Spelling{"Delete"_L1, "Del"_L1}};

KeySequence sequenceOf(const ClipboardCore::KeyChord& chord)
{
    QString text = chord.text();
    for (const Spelling& spelling : spellings)
        text.replace(spelling.ours, spelling.toolkits);
    return {{QKeySequence::fromString(text, QKeySequence::PortableText)[0].toCombined()}};
}

std::optional<ClipboardCore::KeyChord> chordOf(const KeySequence& sequence)
{
    QString text = QKeySequence(sequence.keys.front()).toString(QKeySequence::PortableText);
    for (const Spelling& spelling : spellings)
        text.replace(spelling.toolkits, spelling.ours);
    return ClipboardCore::KeyChord::fromText(text);
}

// What is set: the key in force, for which one that the user has chosen before is taken instead; or the default of the
// system settings.
constexpr uint inForce = 2;
constexpr uint whateverWasChosen = 4; // is no longer taken instead
constexpr uint asDefault = 8;

} // namespace

KGlobalAccelHotKey::KGlobalAccelHotKey(std::unique_ptr<HotKeyGrabber> otherwise)
    : m_bus(QDBusConnection::sessionBus())
    , m_arrival(serviceName, m_bus, QDBusServiceWatcher::WatchForRegistration)
    , m_otherwise(std::move(otherwise))
    , m_action{u"com.tessaly.Tessaly"_s, u"toggle"_s, u"Tessaly"_s,
               QCoreApplication::translate("HotKeyGrabber", "Open the clipboard’s history")}
{
    qDBusRegisterMetaType<KeySequence>();
    qDBusRegisterMetaType<KeySequences>();
    connect(&m_arrival, &QDBusServiceWatcher::serviceRegistered, this, &KGlobalAccelHotKey::enlist);
    connect(m_otherwise.get(), &HotKeyGrabber::pressed, this, &HotKeyGrabber::pressed);
    connect(m_otherwise.get(), &HotKeyGrabber::granted, this, [this] {
        setBound(m_otherwise->bound());
        emit granted();
    });
    connect(m_otherwise.get(), &HotKeyGrabber::failed, this, &HotKeyGrabber::failed);
}

KGlobalAccelHotKey::~KGlobalAccelHotKey()
{
    if (m_service.isEmpty())
        return;
    auto letGo = QDBusMessage::createMethodCall(m_service, objectPath, interfaceName, u"setInactive"_s);
    letGo.setArguments({m_action});
    // What is only sent might not get out any more.
    m_bus.call(letGo, QDBus::Block, lastCallLimit.count());
}

void KGlobalAccelHotKey::grab()
{
    m_otherwise->setChord(chord());
    if (m_bus.isConnected())
        enlist();
    else
        m_otherwise->grab();
}

QString KGlobalAccelHotKey::holder() const
{
    return m_service.isEmpty() ? m_otherwise->holder() : u"plasma"_s;
}

void KGlobalAccelHotKey::enlist()
{
    ask(u"doRegister"_s, {m_action}, [this](const QDBusMessage& reply) {
        listenTo(reply.service());
        const QVariant keys = QVariant::fromValue(KeySequences{sequenceOf(chord())});
        ask(u"setShortcutKeys"_s, {m_action, keys, asDefault}, [](const QDBusMessage&) {});
        // Who changes the key while the program runs means this one, whatever the system settings hold.
        const bool isAnother = m_asked && *m_asked != chord();
        m_asked = chord();
        ask(u"setShortcutKeys"_s, {m_action, keys, isAnother ? inForce | whateverWasChosen : inForce},
            [this](const QDBusMessage& set) { judge(set.arguments().value(0)); });
    });
}

void KGlobalAccelHotKey::listenTo(const QString& service)
{
    if (m_service == service)
        return;
    m_service = service;
    // Each program has an object of its own there.
    m_bus.connect(service, {}, componentInterface, u"globalShortcutPressed"_s, this,
                  SLOT(shortcutPressed(QString, QString, qlonglong)));
    m_bus.connect(service, {}, componentInterface, u"globalShortcutReleased"_s, this,
                  SLOT(shortcutReleased(QString, QString, qlonglong)));
    m_bus.connect(service, objectPath, interfaceName, u"yourShortcutsChanged"_s, this,
                  SLOT(shortcutsChanged(QDBusMessage)));
}

/// What there is now may be another key, which the user has chosen.
void KGlobalAccelHotKey::judge(const QVariant& keys)
{
    const auto sequences = qdbus_cast<KeySequences>(keys);
    const auto isSet = [](const KeySequence& sequence) { return sequence.keys.front() != 0; };
    const auto found = std::ranges::find_if(sequences, isSet);
    if (found == sequences.cend())
        return explainMissingKey();
    if (const auto chord = chordOf(*found))
        setBound(*chord);
    qCDebug(timing, "hot-key-grabbed");
    emit granted();
}

void KGlobalAccelHotKey::explainMissingKey()
{
    ask(u"globalShortcutAvailable"_s, {QVariant::fromValue(sequenceOf(chord())), m_action.first()},
        [this](const QDBusMessage& reply) {
            const bool isFree = reply.arguments().value(0).toBool();
            emit failed(
                isFree ? QCoreApplication::translate("HotKeyGrabber",
                                                     "The system settings have no key that opens Tessaly.")
                       : QCoreApplication::translate(
                             "HotKeyGrabber", "%1 is in use by another program. Choose another key in Preferences."));
        });
}

bool KGlobalAccelHotKey::isOurs(const QString& component, const QString& shortcut) const
{
    return component == m_action.at(0) && shortcut == m_action.at(1);
}

/// Held down, the key repeats.
void KGlobalAccelHotKey::shortcutPressed(const QString& component, const QString& shortcut, qlonglong /*time*/)
{
    if (isOurs(component, shortcut) && !std::exchange(m_isHeld, true))
        emit pressed();
}

void KGlobalAccelHotKey::shortcutReleased(const QString& component, const QString& shortcut, qlonglong /*time*/)
{
    if (isOurs(component, shortcut))
        m_isHeld = false;
}

void KGlobalAccelHotKey::shortcutsChanged(const QDBusMessage& message)
{
    const QStringList action = message.arguments().value(0).toStringList();
    if (isOurs(action.value(0), action.value(1)))
        judge(message.arguments().value(1));
}

void KGlobalAccelHotKey::ask(const QString& method, const QVariantList& arguments, const Answered& answered)
{
    auto message = QDBusMessage::createMethodCall(serviceName, objectPath, interfaceName, method);
    message.setAutoStartService(false); // what could be started has no keys of this compositor
    message.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, callLimit.count()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, answered](QDBusPendingCallWatcher* done) {
        done->deleteLater();
        const QDBusError error = done->error();
        if (!error.isValid())
            answered(done->reply());
        else if (error.name().endsWith("NameHasNoOwner"_L1) || error.type() == QDBusError::ServiceUnknown)
            m_otherwise->grab();
        else
            emit failed(QCoreApplication::translate("HotKeyGrabber", "%1 could not be bound: %2")
                            .replace("%2"_L1, error.message()));
    });
}

} // namespace Clipboard
