#pragma once

#include "KeyRing.h"
#include "SecretService.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QList>
#include <QObject>
#include <QVariantList>

#include <functional>

namespace Clipboard {

/// One asking of the key ring, call after call. Deletes itself once it has answered.
class KeyRequest final : public QObject
{
    Q_OBJECT
public:
    KeyRequest(QDBusConnection bus, KeyRing::IfMissing ifMissing, KeyRing::IfLocked ifLocked,
               std::function<void(const KeyRing::Answer&)> answer, QObject* parent);

    void start();
    /// Leaves it unanswered.
    void cancel();

private slots:
    void prompted(bool isDismissed, const QDBusVariant& result);

private:
    using Path = QDBusObjectPath;
    using Next = std::function<void()>;
    void call(const QString& path, QLatin1String interface, const QString& method, const QVariantList& arguments,
              std::function<void(const QVariantList& reply)> then);
    [[nodiscard]] int patience() const;
    void search();
    void take(const QList<Path>& unlocked, const QList<Path>& locked);
    void unlock(const Path& object, Next then);
    void prompt(const Path& prompt, Next then);
    void create();
    void createIn(const Path& collection);
    void read(const Path& item);
    void finish(const KeyRing::Answer& answer);
    void fail(const QString& problem) { finish({{}, problem}); }

    QDBusConnection m_bus;
    KeyRing::IfMissing m_ifMissing;
    KeyRing::IfLocked m_ifLocked;
    std::function<void(const KeyRing::Answer&)> m_answer;
    Path m_session;
    Next m_afterPrompt;
    QByteArray m_created;
};

} // namespace Clipboard
