#pragma once

#include "Support/KeyChord.h"

#include <QDBusArgument>
#include <QList>
#include <QString>
#include <QVariantMap>

namespace Clipboard {

/// One shortcut as the interface org.freedesktop.portal.GlobalShortcuts writes it.
struct PortalShortcut
{
    QString id;
    QVariantMap properties;

    /// What the user presses for it, in words of the desktop; empty while no key is set.
    [[nodiscard]] QString trigger() const;
};
using PortalShortcuts = QList<PortalShortcut>;

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut);

/// The key as a preferred trigger is written: "LOGO+SHIFT+v" (freedesktop.org, Shortcuts Specification).
[[nodiscard]] QString portalTrigger(const ClipboardCore::KeyChord& chord);

} // namespace Clipboard
