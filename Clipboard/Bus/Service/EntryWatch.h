#pragma once

#include "History/ClipItem.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QUuid>

namespace Clipboard::Bus {

/// Tells what became of the entries from one state of the history to the next. Main thread only.
class EntryWatch final : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Compares with the state of the last call; the first only remembers.
    void follow(const QList<ClipboardCore::ClipItem>& items);

signals:
    void added(const QUuid& id, ClipboardCore::ClipType type);
    /// Pinned, unpinned, or copied anew.
    void changed(const QUuid& id);
    void removed(const QUuid& id);

private:
    struct State
    {
        double createdAt = 0;
        bool isPinned = false;
        bool operator==(const State&) const = default;
    };
    QHash<QUuid, State> m_known;
    bool m_isFollowing = false;
};

} // namespace Clipboard::Bus
