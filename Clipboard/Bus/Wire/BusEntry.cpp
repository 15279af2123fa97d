#include "BusEntry.h"

#include "PreviewLine.h"

#include <QDBusMetaType>

#include <cmath>

namespace Clipboard::Bus {

namespace {

// 2001-01-01 00:00:00 UTC, from where entries count.
constexpr double epochOffset = 978307200;

} // namespace

BusEntry BusEntry::from(const ClipboardCore::ClipItem& item, qsizetype position)
{
    return {static_cast<quint32>(position + 1),
            idText(item.id),
            item.isPinned,
            std::llround((item.createdAt + epochOffset) * 1000),
            ClipboardCore::rawValue(item.type),
            item.sourceApp.value_or(QString()),
            item.bundleID.value_or(QString()),
            static_cast<quint64>(item.content.byteCount()),
            previewLine(item.content),
            static_cast<quint32>(item.furtherFiles)};
}

QDBusArgument& operator<<(QDBusArgument& argument, const BusEntry& entry)
{
    argument.beginStructure();
    argument << entry.index << entry.id << entry.isPinned << entry.copiedAt << entry.type << entry.sourceApp
             << entry.bundleID << entry.size << entry.preview << entry.furtherFiles;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, BusEntry& entry)
{
    argument.beginStructure();
    argument >> entry.index >> entry.id >> entry.isPinned >> entry.copiedAt >> entry.type >> entry.sourceApp >>
        entry.bundleID >> entry.size >> entry.preview >> entry.furtherFiles;
    argument.endStructure();
    return argument;
}

QString idText(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces);
}

void registerBusEntry()
{
    qDBusRegisterMetaType<BusEntry>();
    qDBusRegisterMetaType<QList<BusEntry>>();
}

} // namespace Clipboard::Bus
