#include "History/HistoryOperation.h"

#include "History/EntryList.h"

namespace ClipboardCore {

namespace {

void take(EntryList& entries, const QUuid& id)
{
    if (const qsizetype position = entries.find(id); position >= 0)
        entries.take(position);
}

void apply(const HistoryOperation::Put& put, EntryList& entries)
{
    take(entries, put.entry.id);
    entries.insert(put.entry);
}

void apply(const HistoryOperation::Touch& touch, EntryList& entries)
{
    if (const qsizetype position = entries.find(touch.id); position >= 0)
        entries.touch(position, touch.createdAt, touch.sourceApp, touch.bundleID, touch.furtherFiles);
}

void apply(const HistoryOperation::Pin& pin, EntryList& entries)
{
    if (const qsizetype position = entries.find(pin.id); position >= 0)
        entries.setPinned(position, pin.isPinned);
}

void apply(const HistoryOperation::Remove& remove, EntryList& entries)
{
    for (const QUuid& id : remove.ids)
        take(entries, id);
}

} // namespace

void apply(const HistoryOperation& operation, EntryList& entries)
{
    std::visit([&entries](const auto& change) { apply(change, entries); }, operation.change);
}

} // namespace ClipboardCore
