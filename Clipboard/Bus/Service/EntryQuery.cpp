#include "EntryQuery.h"

#include "History/SearchIndex.h"

#include <QMetaType>

namespace Clipboard::Bus {

using namespace Qt::StringLiterals;
using ClipboardCore::ClipItem;

namespace {

// As `tessaly list` prints it. No history has so many entries that a place would be as long.
constexpr qsizetype shortestID = 8;

template <typename T>
bool take(const QVariant& from, T& to)
{
    if (from.metaType() != QMetaType::fromType<T>())
        return false;
    to = from.value<T>();
    return true;
}

} // namespace

std::optional<EntryQuery> EntryQuery::from(const QVariantMap& options)
{
    EntryQuery query;
    for (const auto& [key, value] : options.asKeyValueRange()) {
        QString type;
        quint32 limit = 0;
        if (key == "search"_L1 && take(value, query.search))
            continue;
        if (key == "pinned"_L1 && take(value, query.onlyPinned))
            continue;
        if (key == "limit"_L1 && take(value, limit))
            query.limit = limit;
        else if (key != "type"_L1 || !take(value, type) || !(query.type = ClipboardCore::clipTypeFromRawValue(type)))
            return std::nullopt;
    }
    return query;
}

QList<BusEntry> EntryQuery::run(const QList<ClipItem>& items) const
{
    QList<BusEntry> found;
    const QList<qsizetype> positions = ClipboardCore::SearchIndex::search(items, search);
    for (const qsizetype position : positions) {
        if (limit && found.size() >= *limit)
            break;
        const ClipItem& item = items.at(position);
        if ((!type || item.type == *type) && (!onlyPinned || item.isPinned))
            found.append(BusEntry::from(item, position));
    }
    return found;
}

qsizetype positionOf(const QString& name, const QList<ClipItem>& items)
{
    if (name.size() < shortestID) {
        bool isNumber = false;
        const uint place = name.toUInt(&isNumber);
        return isNumber && place >= 1 && place <= items.size() ? static_cast<qsizetype>(place) - 1 : -1;
    }
    qsizetype found = -1;
    for (qsizetype position = 0; position < items.size(); ++position) {
        if (!idText(items.at(position).id).startsWith(name, Qt::CaseInsensitive))
            continue;
        if (found >= 0)
            return -1;
        found = position;
    }
    return found;
}

} // namespace Clipboard::Bus
