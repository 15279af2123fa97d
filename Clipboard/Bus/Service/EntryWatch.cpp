#include "EntryWatch.h"

#include <utility>

namespace Clipboard::Bus {

using ClipboardCore::ClipItem;

void EntryWatch::follow(const QList<ClipItem>& items)
{
    QHash<QUuid, State> before = std::exchange(m_known, {});
    m_known.reserve(items.size());
    for (const ClipItem& item : items)
        m_known.insert(item.id, {item.createdAt, item.isPinned});
    if (!std::exchange(m_isFollowing, true))
        return;
    for (qsizetype position = items.size() - 1; position >= 0; --position) { // the oldest first, as they came
        const ClipItem& item = items.at(position);
        const auto known = before.constFind(item.id);
        if (known == before.cend())
            emit added(item.id, item.type);
        else if (*known != m_known.value(item.id))
            emit changed(item.id);
        before.remove(item.id);
    }
    for (const auto& [id, state] : before.asKeyValueRange())
        emit removed(id);
}

} // namespace Clipboard::Bus
