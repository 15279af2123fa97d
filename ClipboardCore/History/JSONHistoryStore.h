#pragma once

#include "History/ClipItem.h"
#include "Sealing/ContentSeal.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace ClipboardCore {

class EntryList;

/// The clipboard history in memory, its one JSON file and the journal beside it (docs/history-format.md).
///
/// Pinned entries come first, then newest first. The store never saves on its own: the caller changes it, releases the
/// picture files of the entries it got back, then calls saveAsync(). Main thread only.
class JSONHistoryStore final
{
public:
    /// All contents together, in bytes: two of the largest texts that are ever copied, and what a desktop can spare.
    static constexpr qint64 largestHistory = qint64{512} << 20;

    /// Loads `path` at once; a file that is missing, unreadable or not a whole valid array yields an empty history.
    JSONHistoryStore(const QString& path, qsizetype cap, double saveDelaySeconds, qint64 largest = largestHistory);
    ~JSONHistoryStore();
    Q_DISABLE_COPY_MOVE(JSONHistoryStore)

    [[nodiscard]] const QList<ClipItem>& items() const;
    /// Where a file that was there and could not be loaded is kept from the first save on.
    [[nodiscard]] std::optional<QString> unreadableFile() const;
    /// False while such a file is kept, from this run or an earlier one, or the history is locked: there may be
    /// pictures that items() does not name.
    [[nodiscard]] bool namesAllPictures() const;
    /// True while the file is sealed and no seal opens it: items() are those of this run alone, and nothing is written.
    [[nodiscard]] bool isLocked() const;
    /// How the files are kept from now on, and what opens them. Files that are kept otherwise are written anew in the
    /// background. Once that is known to the writer of the files, `done` is called: a locked history that was opened
    /// has then been put together with what was recorded, which evicted the entries that it is called with.
    void setSealing(const Sealing& sealing, std::function<void(const QList<ClipItem>& evicted)> done);
    /// For a new entry: now, but never before the newest entry, so that a clock that was wrong hides no copies.
    [[nodiscard]] double timeOfNewEntry() const;

    /// Inserts `item`, or moves the entry of equal type and content to its new time, then enforces the cap.
    /// Returns the entries that the cap evicted, oldest first.
    [[nodiscard]] QList<ClipItem> add(const ClipItem& item);
    /// Puts entries back as they were when they were removed, then enforces the cap. One that is there already stays as
    /// it is; one whose content was copied anew meanwhile only hands its pin on. Returns the entries that the cap
    /// evicted.
    [[nodiscard]] QList<ClipItem> restore(const QList<ClipItem>& items);
    /// Another cap, enforced at once. Returns the entries that it evicted.
    [[nodiscard]] QList<ClipItem> setCap(qsizetype cap);
    /// Evicts the entries of before that time, in the unit of ClipItem::createdAt, that are not pinned; returns them.
    [[nodiscard]] QList<ClipItem> evictBefore(double oldest);
    void togglePin(const QUuid& id);
    [[nodiscard]] std::optional<ClipItem> remove(const QUuid& id);
    /// Returns what it removed.
    [[nodiscard]] QList<ClipItem> removeAll(bool keepingPinned);

    /// Writes the file now. Nothing on success, else what went wrong.
    [[nodiscard]] std::optional<QString> save();
    /// Puts what changed into the journal and schedules one background save of the file, `saveDelaySeconds` after the
    /// last call; a large file is left alone while the journal is small beside it.
    void saveAsync();
    /// Calls back once what changed before the last saveAsync() would survive the end of the process, unless the
    /// context is gone by then. When it cannot be written it calls back all the same.
    void whenRecorded(const QObject* context, std::function<void()> done);
    /// Waits for running saves and, when one was asked for since the last flush, writes the current state.
    void flush();
    /// Called on the caller's thread with what went wrong when background saves start to fail, and with nothing once
    /// they work again. Until then they are tried again and again.
    void onSaveFailureChanged(std::function<void(const std::optional<QString>& failure)> callback);

private:
    [[nodiscard]] QList<ClipItem> join(const EntryList& found);

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ClipboardCore
