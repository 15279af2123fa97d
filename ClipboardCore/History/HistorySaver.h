#pragma once

#include "History/EntryList.h"
#include "History/HistoryOperation.h"
#include "Sealing/ContentSeal.h"

#include <QList>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace ClipboardCore {

class HistoryDisk;

/// When the history goes to the disk: each change at once into the journal, the file a while after the last change. A
/// save that fails is tried again until one succeeds. Main thread only; the work is done on threads of its own.
class HistorySaver final
{
public:
    HistorySaver(const QString& path, std::chrono::nanoseconds delay);
    /// Waits until what was handed over is in the journal, and drops the pending save.
    ~HistorySaver();
    Q_DISABLE_COPY_MOVE(HistorySaver)

    /// What is on the disk, at once; nothing while it is sealed and no seal opens it. To be called once, first.
    [[nodiscard]] EntryList load();
    /// True while what is on the disk could not be opened: nothing is written then.
    [[nodiscard]] bool isLocked() const;
    /// How the files are kept from now on; those that are kept otherwise are written anew in the background. `opened`
    /// is called on the caller's thread, for a locked history with what it held: who then has put together the two
    /// hands over the whole.
    void setSealing(const Sealing& sealing, std::function<void(const std::optional<EntryList>& found)> opened);
    [[nodiscard]] const HistoryDisk& disk() const;

    /// Called on the caller's thread with what went wrong when saving starts to fail, and with nothing when it works
    /// again.
    void onFailureChanged(std::function<void(const std::optional<QString>& failure)> callback);

    /// What changed since the last call, and the history now.
    void changed(const QList<HistoryOperation>& operations, const QList<ClipItem>& items);
    /// Calls back on the caller's thread once the journal has what changed so far, or could not take it.
    void whenRecorded(std::function<void()> done);
    /// Writes the file now. Nothing on success, else what went wrong.
    [[nodiscard]] std::optional<QString> save(const QList<ClipItem>& items);
    /// Waits for what is under way; when something changed since the last flush, or the file
    /// is gone, writes the file as well. Where that
    /// fails, the journal takes what it does not have. False when nothing was to be written.
    bool flush(const QList<HistoryOperation>& operations, const QList<ClipItem>& items);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ClipboardCore
