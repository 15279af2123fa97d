#pragma once

#include "History/ClipItem.h"

#include <QList>
#include <QString>

#include <memory>

namespace ClipboardCore {

/// The clipboard history in memory and its one JSON file (docs/history-format.md).
///
/// Pinned entries come first, then newest first. The store never saves on its own: the caller changes it, releases the
/// picture files of the entries it got back, then calls saveAsync(). Main thread only.
class JSONHistoryStore final
{
public:
    /// Loads `path` at once; a file that is missing, unreadable or not a whole valid array yields an empty history.
    JSONHistoryStore(QString path, qsizetype cap, double saveDelaySeconds);
    ~JSONHistoryStore();
    Q_DISABLE_COPY_MOVE(JSONHistoryStore)

    [[nodiscard]] const QList<ClipItem>& items() const;

    /// Inserts `item`, or moves the entry of equal type and content to its new time, then enforces the cap.
    /// Returns the entries that the cap evicted, oldest first.
    [[nodiscard]] QList<ClipItem> add(const ClipItem& item);
    void togglePin(const QUuid& id);
    [[nodiscard]] std::optional<ClipItem> remove(const QUuid& id);
    /// Returns what it removed.
    [[nodiscard]] QList<ClipItem> removeAll(bool keepingPinned);

    /// Writes the file now. Nothing on success, else what went wrong.
    [[nodiscard]] std::optional<QString> save();
    /// Schedules one background save, `saveDelaySeconds` after the last call.
    void saveAsync();
    /// Waits for running saves and, when one was asked for since the last flush, writes the current state.
    void flush();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ClipboardCore
