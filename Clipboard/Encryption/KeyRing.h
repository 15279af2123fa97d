#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

namespace Clipboard {

class KeyRequest;

/// The history's key in the desktop's keyring, by the Secret Service API (org.freedesktop.secrets). Never waits: the
/// service may be missing, slow, or ask the user to unlock it. Main thread only.
class KeyRing final : public QObject
{
    Q_OBJECT
public:
    struct Answer
    {
        QByteArray key;    // empty when there is none
        QString problem{}; // then: why not, a whole sentence for the user
    };
    enum class IfMissing { leave, create };
    /// Whether the user may be asked to unlock the keyring.
    enum class IfLocked { leave, ask };

    explicit KeyRing(QObject* parent = nullptr);

    /// Calls `answer` once, never before this returns; of several askings only the last is answered. A key that is
    /// created is read back before it is handed out.
    void ask(IfMissing ifMissing, IfLocked ifLocked, std::function<void(const Answer& answer)> answer);

signals:
    /// A keyring came or was unlocked: asking again may have another answer.
    void changed();

private slots:
    void collectionChanged() { emit changed(); }

private:
    QDBusConnection m_bus;
    QDBusServiceWatcher m_arrival;
    QPointer<KeyRequest> m_request; // a child
};

} // namespace Clipboard
