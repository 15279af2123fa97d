#pragma once

#include "History/ClipItem.h"
#include "Support/JSONWriter.h"

#include <QByteArray>
#include <QList>

#include <optional>

/// The history file's content (docs/history-format.md): a JSON array of entries.
namespace ClipboardCore::HistoryCoding {

/// One entry, as it stands in the file.
void encode(const ClipItem& item, JSONWriter& json);
/// Hands the array to `sink` piece by piece.
void encode(const QList<ClipItem>& items, const JSONWriter::Sink& sink);

/// The parser reads past the end of what it parses. A buffer with room for this many more bytes is not copied.
inline constexpr qsizetype decodePadding = 64;
/// The parser's own limit: some gigabytes.
inline constexpr qsizetype largestDocument = 0xFFFFFFFF - decodePadding;

/// The entries of a whole valid array (RFC 8259, strictly); nothing when anything in it is wrong.
[[nodiscard]] std::optional<QList<ClipItem>> decode(QByteArray json);

/// What stands for `id` in the file: 8-4-4-4-12 upper-case hexadecimal digits.
[[nodiscard]] QByteArray encodedID(const QUuid& id);
/// The reverse; digits of either case. Nothing for any other form, braces included.
[[nodiscard]] std::optional<QUuid> decodedID(QByteArrayView text);

} // namespace ClipboardCore::HistoryCoding
