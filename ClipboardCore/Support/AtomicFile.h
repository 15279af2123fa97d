#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace ClipboardCore {

/// Replaces a file as a whole: whoever reads it sees the old content or the new one, whatever happens in between.
///
/// The content goes to "<path>.tmp" beside it, readable by the user alone, is flushed to the disk and renamed; the
/// folder's entry is flushed too. Two processes that write the same file take turns; after two seconds
/// of waiting the write fails. Where there are no locks, none is taken. What a killed process leaves of
/// the temporary file is overwritten by the next write.
class AtomicFile final
{
public:
    explicit AtomicFile(QString path);
    /// Drops what was not committed.
    ~AtomicFile();
    Q_DISABLE_COPY_MOVE(AtomicFile)

    /// After a failure, which commit() reports, further bytes are ignored.
    void append(QByteArrayView bytes);
    [[nodiscard]] bool hasFailed() const { return m_failure.has_value(); }
    /// Nothing on success, else what went wrong; the old file is then untouched.
    [[nodiscard]] std::optional<QString> commit();

private:
    void open();
    void fail(QLatin1String operation);
    void discard();

    QString m_path;
    QByteArray m_target;
    QByteArray m_temporary;
    int m_file = -1;
    std::optional<QString> m_failure;
};

} // namespace ClipboardCore
