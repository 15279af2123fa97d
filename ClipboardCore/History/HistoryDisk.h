#pragma once

#include "History/EntryList.h"
#include "History/FurtherFiles.h"
#include "History/HistoryJournal.h"
#include "Support/RegularFile.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QUuid>

#include <mutex>
#include <optional>

namespace ClipboardCore {

/// The history on the disk (docs/history-format.md): one file, and beside it a journal of what has changed since.
/// Changes can be appended to the journal while the file is written. Files are written by one thread at a time.
class HistoryDisk final
{
public:
    /// `path` may be a symbolic link: what counts is where it leads, and the journal stands there.
    explicit HistoryDisk(const QString& path);
    Q_DISABLE_COPY_MOVE(HistoryDisk)

    /// What both files hold together; nothing, and again and again, while one of them is sealed and no seal opens it.
    /// To be called first, until something comes of it.
    [[nodiscard]] std::optional<EntryList> load();
    /// How the files are written from the next save() on, and what opens them.
    void setSealing(const Sealing& sealing);
    /// False while a file stands in the other form.
    [[nodiscard]] bool isAsWanted() const;
    /// Where a file that was there and could not be loaded is kept as soon as something is written.
    [[nodiscard]] std::optional<QString> unreadableFile() const;
    /// True when such a file is kept, of this run or an earlier one.
    [[nodiscard]] bool keepsUnreadableFile() const;

    /// Puts the operations in the journal, and what it had no room for before. `items` is the whole history after them,
    /// for the next save().
    void append(const QList<HistoryOperation>& operations, const QList<ClipItem>& items);
    /// Flushes what was appended to the disk. Takes its time; append() need not wait for it.
    void flushJournal();

    /// True when the file should be written: it is small, another one stands in its place, the journal has become large
    /// beside it, or lacks something.
    [[nodiscard]] bool isSaveDue() const;
    /// True when the file that was there last is there no more: its folder may have gone.
    [[nodiscard]] bool isFileGone() const;
    /// True when the last run left something to be written: the journal has grown large beside the file, as after a
    /// program that was killed again and again before it could save; it is damaged; a file stands in the other form.
    [[nodiscard]] bool isCatchingUpDue() const;
    /// True when something that the user removed is still on the disk.
    [[nodiscard]] bool isForgettingDue() const;
    /// Writes the file as of the last append() or, with `items`, as of now, and empties the journal. Nothing on
    /// success, else what went wrong; the old file is then untouched.
    [[nodiscard]] std::optional<QString> save(const std::optional<QList<ClipItem>>& items = std::nullopt);

private:
    struct Unwritten
    {
        quint64 batch = 0;
        double time = 0;
    };

    struct Contents
    {
        std::optional<QByteArray> file; // nothing when it cannot be read
        QByteArray journal;
    };

    [[nodiscard]] Contents readFiles();
    [[nodiscard]] std::optional<QByteArray> readFile();
    [[nodiscard]] std::optional<QList<ClipItem>> decodeFile(std::optional<QByteArray> content) const;
    [[nodiscard]] EntryList withJournal(const QList<ClipItem>& items, const QByteArray& journal);
    [[nodiscard]] std::optional<QString> keepUnreadable();
    void keepDamagedJournal();
    [[nodiscard]] bool appendUnwritten();
    [[nodiscard]] bool isInWantedForm() const;

    const QString m_folder;
    const QString m_path;
    const QString m_journalPath;

    mutable std::mutex m_mutex;
    // All below: guarded by `m_mutex`, but for load() and what it alone sets.
    HistoryJournal m_journal;
    FurtherFiles m_furtherFiles; // used by the thread that writes files alone
    JournalCoding::FileState m_file;
    RegularFile::Trace m_trace; // of that file
    QList<ClipItem> m_items;
    std::optional<QString> m_unreadable;
    bool m_isUnreadableInPlace = false;
    std::optional<QString> m_damagedJournal; // where it goes
    Sealing m_sealing;
    bool m_isFileSealed = false;
    // How many batches were appended, and after how many of them what happened.
    quint64 m_appended = 0;
    quint64 m_saved = 0;
    quint64 m_lastGap = 0;
    quint64 m_lastRemoval = 0;
    /// The entries of which the journal could not take what happened to them, with the last batch of that.
    QHash<QUuid, Unwritten> m_unwritten;
};

} // namespace ClipboardCore
