#include "HistoryEncryption.h"

#include "ImageBlobs.h"
#include "OffMainThread.h"
#include "Preferences.h"
#include "Sealing/StoredFile.h"
#include "ServiceNotices.h"
#include "SodiumSeal.h"

#include <QTimer>

#include <chrono>
#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;
using ClipboardCore::ClipItem;
using ClipboardCore::Sealing;

namespace {

const QString notice = u"encryption"_s;

// A keyring that is open has answered long before. One that asks its user may wait for as long as it likes.
constexpr std::chrono::milliseconds patience{3000};

} // namespace

HistoryEncryption::HistoryEncryption(Services services, QObject* parent)
    : QObject(parent)
    , m_services(std::move(services))
{
    m_pool.setMaxThreadCount(1);
}

HistoryEncryption::~HistoryEncryption()
{
    m_stop.request_stop();
    m_pool.clear();
    m_pool.waitForDone();
}

void HistoryEncryption::start()
{
    m_isWanted = m_services.preferences.flag(PreferenceKey::encryptHistory);
    if (m_isWanted || m_services.store.isLocked())
        ask(KeyRing::IfLocked::ask);
    else
        lookForSealedPictures();
}

void HistoryEncryption::follow()
{
    const bool isWanted = m_services.preferences.flag(PreferenceKey::encryptHistory);
    if (std::exchange(m_isWanted, isWanted) == isWanted)
        return;
    if (m_seal)
        apply();
    else if (isWanted || m_services.store.isLocked())
        ask(KeyRing::IfLocked::ask);
}

/// A program that was killed while it decrypted them leaves some.
void HistoryEncryption::lookForSealedPictures()
{
    const auto look = [dir = m_services.imagesDir] { return ImageBlobs::hasSealed(dir); };
    runOffMainThread(m_pool, this, look, [this](bool isAnySealed) {
        if (isAnySealed)
            ask(KeyRing::IfLocked::ask);
    });
}

void HistoryEncryption::ask(KeyRing::IfLocked ifLocked)
{
    if (!m_keyRing) {
        m_keyRing = std::make_unique<KeyRing>();
        connect(m_keyRing.get(), &KeyRing::changed, this, [this] {
            if (!m_seal && !m_services.notices.textOf(notice).isEmpty())
                ask(KeyRing::IfLocked::leave);
        });
    }
    if (m_services.store.isLocked())
        QTimer::singleShot(patience, this, [this] {
            if (!m_seal && m_services.notices.textOf(notice).isEmpty())
                lack(tr("The keyring has not answered yet."));
        });
    // A new key would open nothing of what is there.
    const bool mayCreate = m_isWanted && !m_services.store.isLocked();
    m_keyRing->ask(mayCreate ? KeyRing::IfMissing::create : KeyRing::IfMissing::leave, ifLocked,
                   [this](const KeyRing::Answer& answer) { take(answer); });
}

void HistoryEncryption::take(const KeyRing::Answer& answer)
{
    m_seal = SodiumSeal::make(answer.key);
    if (m_seal)
        apply();
    else
        lack(answer.problem.isEmpty() ? tr("The keyring does not have its key.") : answer.problem);
}

void HistoryEncryption::lack(const QString& problem)
{
    if (m_services.store.isLocked())
        return m_services.notices.raise(
            notice,
            tr("The encrypted history is not open, and what is copied is kept only until the end: %1").arg(problem));
    if (m_isWanted) {
        m_services.refused(tr("The history is not encrypted: %1").arg(problem));
        static_cast<void>(m_services.preferences.set(*findPreference(PreferenceKey::encryptHistory),
                                                     {u"false"_s})); // comes back here
        m_isWanted = false;
        return lookForSealedPictures();
    }
    m_services.notices.raise(notice, tr("Encrypted pictures cannot be shown: %1").arg(problem));
}

void HistoryEncryption::apply()
{
    m_services.notices.clear(notice);
    const Sealing sealing{m_seal, m_isWanted};
    ClipboardCore::StoredFile::setSealing(sealing);
    const bool wasLocked = m_services.store.isLocked();
    m_services.store.setSealing(sealing, [this, wasLocked](const QList<ClipItem>& evicted) {
        if (wasLocked)
            m_services.opened(evicted);
    });
    ImageBlobs::bringIntoForm(m_services.imagesDir, m_pool, m_stop.get_token());
}

} // namespace Clipboard
