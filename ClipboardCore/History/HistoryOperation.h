#pragma once

#include "History/ClipItem.h"

#include <QList>

#include <variant>

namespace ClipboardCore {

class EntryList;

/// One change of the history, in a form that can be applied again, to the same list or to another one that has these
/// entries: it says what is so afterwards, not what to turn around.
struct HistoryOperation
{
    /// The entry is there, as it stands here.
    struct Put
    {
        ClipItem entry;
    };
    /// It was copied again; as EntryList::touch().
    struct Touch
    {
        QUuid id;
        double createdAt = 0;
        std::optional<QString> sourceApp;
        std::optional<QString> bundleID;
        int furtherFiles = 0;
    };
    struct Pin
    {
        QUuid id;
        bool isPinned = false;
    };
    /// The entries are gone: because the user wanted it, or because there was no room for them.
    struct Remove
    {
        QList<QUuid> ids;
        bool isEviction = false;
    };

    double time = 0; // when it happened, in the unit of ClipItem::createdAt
    std::variant<Put, Touch, Pin, Remove> change;
};

/// Entries that are not there are left alone.
void apply(const HistoryOperation& operation, EntryList& entries);

} // namespace ClipboardCore
