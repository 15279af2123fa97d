#pragma once

#include "BusEntry.h"
#include "History/ClipItem.h"

#include <QList>
#include <QString>
#include <QVariantMap>

#include <optional>

/// Finding entries for somebody who is not looking at the panel.
namespace Clipboard::Bus {

/// What to list; nothing set lists all.
struct EntryQuery
{
    std::optional<ClipboardCore::ClipType> type;
    QString search; // as in the panel
    bool onlyPinned = false;
    std::optional<quint32> limit;

    /// From the options of the method List; nothing when one is unknown or of another type.
    [[nodiscard]] static std::optional<EntryQuery> from(const QVariantMap& options);
    /// Takes its time, for it searches without an index: never on the main thread.
    [[nodiscard]] QList<BusEntry> run(const QList<ClipboardCore::ClipItem>& items) const;
};

/// Where the entry is that `name` means: its place counted from 1, its id, or the first eight or more characters of
/// that. -1 when it means none, or several.
[[nodiscard]] qsizetype positionOf(const QString& name, const QList<ClipboardCore::ClipItem>& items);

} // namespace Clipboard::Bus
