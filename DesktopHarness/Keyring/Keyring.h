#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QString>

namespace Clipboard::Testing {

/// A keyring of one collection with one item at most, as the Secret Service API describes it, on a connection of its
/// own. It answers on the thread on which it lives, which needs an event loop.
class Keyring final : public QDBusVirtualObject
{
public:
    explicit Keyring(const QString& busAddress);
    ~Keyring() override;

    /// On the bus or not; at first it is not.
    void setThere(bool isThere);
    /// Is unlocked, and says so.
    void sayUnlocked();
    /// Answers what it was asked while it was silent, and whatever comes.
    void speak();

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

    QByteArray key; // empty: there is no item
    bool isLocked = false;
    bool isDismissed = false; // when it asks its user
    bool hasCollection = true;
    bool isSilent = false;
    QString refusal; // of a new key

private:
    [[nodiscard]] QVariantList answer(const QDBusMessage& message);

    QDBusConnection m_bus;
    QList<QDBusMessage> m_unanswered;
};

} // namespace Clipboard::Testing
