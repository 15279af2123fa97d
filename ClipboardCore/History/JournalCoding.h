#pragma once

#include "History/HistoryOperation.h"
#include "Support/JSONWriter.h"

#include <QByteArray>

#include <memory>
#include <optional>
#include <variant>

/// The lines of the history's journal (docs/history-format.md): JSON objects, each with its line feed.
namespace ClipboardCore::JournalCoding {

/// Tells one state of the history file from another.
struct FileState
{
    qint64 size = 0;
    quint64 fingerprint = 0;
    friend bool operator==(const FileState&, const FileState&) = default;
};

/// Says of a state of the file that it holds every operation before this line, but for the last `missing` bytes.
struct Mark
{
    FileState file;
    qint64 missing = 0;
};

/// Hands the line to `sink` piece by piece. `device` is the UUID of where the operation happened.
void encode(const HistoryOperation& operation, QByteArrayView device, const JSONWriter::Sink& sink);
[[nodiscard]] QByteArray encode(const Mark& mark);
/// Of a line that one of both made.
[[nodiscard]] bool isMark(QByteArrayView line);

/// Reads lines, one after the other.
class Decoder final
{
public:
    /// Of an operation that only a later version knows: nothing.
    using Line = std::variant<std::monostate, Mark, HistoryOperation>;

    Decoder();
    ~Decoder();
    Q_DISABLE_COPY_MOVE(Decoder)

    /// `line`, without its line feed. HistoryCoding::decodePadding bytes behind it can be read, whatever they are.
    /// Nothing when anything in it is wrong.
    [[nodiscard]] std::optional<Line> decode(QByteArrayView line);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ClipboardCore::JournalCoding
