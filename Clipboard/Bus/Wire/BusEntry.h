#pragma once

#include "History/ClipItem.h"

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>

namespace Clipboard::Bus {

/// An entry as it is told over the bus, without its content: (usbxssstsu).
struct BusEntry
{
    quint32 index = 0; // in the panel's order, from 1
    QString id;
    bool isPinned = false;
    qint64 copiedAt = 0; // milliseconds since 1970-01-01 00:00:00 UTC
    QString type;
    QString sourceApp; // empty when unknown, as the next one
    QString bundleID;
    quint64 size = 0; // of a text in bytes; of a file its path's
    QString preview;  // previewLine()
    quint32 furtherFiles = 0;

    [[nodiscard]] static BusEntry from(const ClipboardCore::ClipItem& item, qsizetype position);

    friend QDBusArgument& operator<<(QDBusArgument& argument, const BusEntry& entry);
    friend const QDBusArgument& operator>>(const QDBusArgument& argument, BusEntry& entry);
};

/// An entry's id as texts have it, without braces.
[[nodiscard]] QString idText(const QUuid& id);
/// Makes BusEntry and its list known to the bus.
void registerBusEntry();

} // namespace Clipboard::Bus

Q_DECLARE_METATYPE(Clipboard::Bus::BusEntry)
