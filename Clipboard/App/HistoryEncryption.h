#pragma once

#include "History/JSONHistoryStore.h"
#include "KeyRing.h"

#include <QObject>
#include <QString>
#include <QThreadPool>

#include <functional>
#include <memory>
#include <stop_token>

namespace Clipboard {

class Preferences;
class ServiceNotices;

/// Keeps the history's files encrypted while the user wants that, and opens those that are. What they are says each
/// file itself, so that a change of mind that was interrupted is gone on with at the next start. Main thread only.
class HistoryEncryption final : public QObject
{
    Q_OBJECT
public:
    struct Services
    {
        ClipboardCore::JSONHistoryStore& store;
        QString imagesDir;
        Preferences& preferences;
        ServiceNotices& notices;
        /// After a history that was locked has been opened: with what that evicted.
        std::function<void(const QList<ClipboardCore::ClipItem>& evicted)> opened;
        /// What the user asked for cannot be, a whole sentence.
        std::function<void(const QString& problem)> refused;
    };

    explicit HistoryEncryption(Services services, QObject* parent = nullptr);
    /// Leaves pictures that still are in the other form to the next start.
    ~HistoryEncryption() override;
    Q_DISABLE_COPY_MOVE(HistoryEncryption)

    /// What the files and the preference want at the start.
    void start();
    /// What the preference wants now.
    void follow();
    /// Whether what is written now is encrypted.
    [[nodiscard]] bool isOn() const { return m_seal && m_isWanted; }

private:
    void ask(KeyRing::IfLocked ifLocked);
    void take(const KeyRing::Answer& answer);
    void lack(const QString& problem);
    void apply();
    void lookForSealedPictures();

    Services m_services;
    std::unique_ptr<KeyRing> m_keyRing; // once a key is wanted
    std::shared_ptr<const ClipboardCore::ContentSeal> m_seal;
    bool m_isWanted = false;
    std::stop_source m_stop;
    QThreadPool m_pool;
};

} // namespace Clipboard
