#pragma once

#include "HotKeyGrabber.h"
#include "PortalRequest.h"
#include "PortalShortcut.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QPointer>

#include <memory>

namespace Clipboard {

/// The hot key by the desktop's portal of global shortcuts, which asks its user. It counts as bound only when the
/// answer lists it with a key: there are portals that answer with an empty list. Main thread; never waits.
class PortalHotKey final : public HotKeyGrabber
{
    Q_OBJECT
public:
    /// What the user has set up by hand, which `otherwise` looks for, comes first, and its reason is told when the
    /// portal has no key either. The key is asked for again when a portal comes.
    explicit PortalHotKey(std::unique_ptr<HotKeyGrabber> otherwise);

    void grab() override;
    [[nodiscard]] QString holder() const override;

private slots:
    void shortcutActivated(const QDBusObjectPath& session, const QString& shortcut);
    void shortcutsChanged(const QDBusMessage& message);
    void closed();

private:
    void askPortal();
    void createSession();
    void ask(const QString& method, const QVariantList& arguments, const QVariantMap& options,
             const PortalRequest::Done& done);
    void bind();
    void judge(const PortalShortcuts& shortcuts);
    void explainMissingKey();
    void forgetSession();
    [[nodiscard]] bool wasRefused() const;

    QDBusConnection m_bus;
    QDBusServiceWatcher m_presence;
    std::unique_ptr<HotKeyGrabber> m_otherwise;
    QPointer<PortalRequest> m_request; // under way
    QString m_reason;                  // why there is no key otherwise; empty while there is
    QString m_session;                 // the path of the portal's session with our shortcut; empty for none
    bool m_isBound = false;
};

} // namespace Clipboard
