#pragma once

#include "HotKeyGrabber.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace Clipboard {

/// The hot key as one of the global shortcuts of Plasma, which its user can change in the system settings. Its
/// compositor has them on the session bus, as org.kde.kglobalaccel. Main thread; never waits but to let go of the key.
class KGlobalAccelHotKey final : public HotKeyGrabber
{
    Q_OBJECT
public:
    /// `otherwise` is what is asked while nobody has that name. The key is asked for again when somebody gets it.
    explicit KGlobalAccelHotKey(std::unique_ptr<HotKeyGrabber> otherwise);
    /// The key is the window's in front again; what the user has set in the system settings stays.
    ~KGlobalAccelHotKey() override;

    void grab() override;
    [[nodiscard]] QString holder() const override;

private slots:
    void shortcutPressed(const QString& component, const QString& shortcut, qlonglong time);
    void shortcutReleased(const QString& component, const QString& shortcut, qlonglong time);
    void shortcutsChanged(const QDBusMessage& message);

private:
    using Answered = std::function<void(const QDBusMessage& reply)>;

    void enlist();
    void listenTo(const QString& service);
    void judge(const QVariant& keys);
    void explainMissingKey();
    [[nodiscard]] bool isOurs(const QString& component, const QString& shortcut) const;
    void ask(const QString& method, const QVariantList& arguments, const Answered& answered);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_arrival;
    std::unique_ptr<HotKeyGrabber> m_otherwise;
    QStringList m_action; // what Plasma calls a shortcut: program and action, then their names for the user
    QString m_service;    // who has the key for us, by the unique name; empty for nobody
    std::optional<ClipboardCore::KeyChord> m_asked;
    bool m_isHeld = false;
};

} // namespace Clipboard
