#pragma once

#include "History/JournalCoding.h"
#include "History/JournalForm.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace ClipboardCore {

/// The journal beside the history file (docs/history-format.md): what has changed since the file was written. One
/// thread at a time.
class HistoryJournal final
{
public:
    explicit HistoryJournal(const QString& path);
    ~HistoryJournal();
    Q_DISABLE_COPY_MOVE(HistoryJournal)

    /// True when what is there can be read with a key alone.
    [[nodiscard]] bool isSealedOnDisk() const;
    /// What is there; empty when it cannot be read.
    [[nodiscard]] QByteArray read() const;
    /// The operations that the file in this state lacks, of a journal as read() gave it; none when it belongs to
    /// another state. Torn lines are left out. `seal` opens a sealed one. To be called once, first.
    [[nodiscard]] QList<HistoryOperation> load(const QByteArray& content, const JournalCoding::FileState& file,
                                               const std::shared_ptr<const ContentSeal>& seal = nullptr,
                                               bool isFileSealed = false);
    /// True when load() left something out that somebody has changed: sealed lines, or whatever made a journal one that
    /// neither is sealed, as its file is, nor belongs to it.
    [[nodiscard]] bool isDamaged() const { return m_isDamaged; }
    /// What lines are sealed with from the next time on that the journal begins anew; null for plain ones.
    void setSeal(std::shared_ptr<const ContentSeal> seal);
    /// False while lines are there that stand otherwise.
    [[nodiscard]] bool isAsWanted() const { return m_end == 0 || m_form.isSealed() == (m_seal != nullptr); }
    /// Forgets what was loaded, which is gone: the file is `file` now, or none.
    void restart(const JournalCoding::FileState& file);

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
    [[nodiscard]] std::optional<JournalCoding::Decoder::Line> decode(JournalCoding::Decoder& decoder,
                                                                     QByteArrayView line, qint64 offset);
    void begin();
    void write(QByteArrayView bytes);
    void writeLine(QByteArrayView line);
    void writeOperation(const HistoryOperation& operation);
    void carry(const QByteArray& lines, const JournalForm& form, qint64 from);
    [[nodiscard]] bool finishWriting(qint64 start);
    [[nodiscard]] bool rewrite(const QByteArray& carried, qint64 from);

    QByteArray m_path;
    JournalCoding::FileState m_base;
    int m_file = -1;
    qint64 m_end = 0;
    qint64 m_lastOperation = 0; // where it ends
    bool m_hasFailed = false;
    bool m_isDamaged = false;
    JournalForm m_form;
    std::shared_ptr<const ContentSeal> m_seal;
};

} // namespace ClipboardCore
