#pragma once

#include "History/JournalCoding.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace ClipboardCore {

/// The journal beside the history file (docs/history-format.md): what has changed since the file was written. One
/// thread at a time.
class HistoryJournal final
{
public:
    explicit HistoryJournal(const QString& path);
    ~HistoryJournal();
    Q_DISABLE_COPY_MOVE(HistoryJournal)

    /// The operations that the file in this state lacks; none when the journal belongs to another state. Torn
    /// lines are left out. To be called once, first.
    [[nodiscard]] QList<HistoryOperation> load(const JournalCoding::FileState& file);
    /// Forgets the file that was loaded: there is none now, and what has been appended is gone.
    void restart();

    /// False when they could not be written; the journal is then as before.
    [[nodiscard]] bool append(const QList<HistoryOperation>& operations);
    /// Where the next operation will stand.
    [[nodiscard]] qint64 end() const { return m_end; }

    /// The file is about to become `file`, which holds all operations before `from`: whether it then does or not, the
    /// journal fits it.
    void announce(const JournalCoding::FileState& file, qint64 from);
    /// It has become that: what stands before `from` goes.
    void rebase(const JournalCoding::FileState& file, qint64 from);

    /// A descriptor of its own for what was written, so that it can be flushed while the journal is used; -1 when there
    /// is none.
    [[nodiscard]] int duplicate() const;

private:
    [[nodiscard]] bool open();
    void close();
    void write(QByteArrayView bytes);
    [[nodiscard]] bool finishWriting(qint64 start);
    [[nodiscard]] bool rewrite(const QByteArray& content);

    QByteArray m_path;
    JournalCoding::FileState m_base;
    int m_file = -1;
    qint64 m_end = 0;
    qint64 m_lastOperation = 0; // where it ends
    bool m_hasFailed = false;
};

} // namespace ClipboardCore
