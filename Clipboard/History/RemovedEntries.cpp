#include "RemovedEntries.h"

#include "History/JSONHistoryStore.h"
#include "ImageBlobs.h"

#include <algorithm>
#include <utility>

namespace Clipboard {

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
using ClipboardCore::Utf8Text;

namespace {

bool holdsPicture(const QList<ClipItem>& entries, const Utf8Text& path)
{
    return std::ranges::any_of(entries, [&path](const ClipItem& entry) {
        return entry.type == ClipType::image && entry.content.utf8() == path.utf8();
    });
}

} // namespace

void RemovedEntries::forget()
{
    const QList<QList<ClipItem>> removals = std::exchange(m_removals, {});
    for (const QList<ClipItem>& entries : removals)
        release(entries);
}

void RemovedEntries::release(const QList<ClipItem>& entries) const
{
    // Equal pictures share their file: it may have been copied again since, or be brought back.
    QList<ClipItem> released = entries;
    released.removeIf([this](const ClipItem& entry) {
        const auto holds = [&entry](const QList<ClipItem>& others) { return holdsPicture(others, entry.content); };
        return holds(m_store.items()) || std::ranges::any_of(m_removals, holds);
    });
    ImageBlobs::release(released);
}

} // namespace Clipboard
