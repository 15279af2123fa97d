#pragma once

#include "History/ClipItem.h"
#include "Support/JSONWriter.h"

#include <QByteArray>
#include <QList>

#include <optional>

/// The history file's content (docs/history-format.md): a JSON array of entries.
namespace ClipboardCore::HistoryCoding {

/// Hands the array to `sink` piece by piece.
void encode(const QList<ClipItem>& items, const JSONWriter::Sink& sink);

/// The entries of a whole valid array; nothing when anything in it is wrong.
/// `json` needs room for `decodePadding` more bytes, which may hold anything.
[[nodiscard]] std::optional<QList<ClipItem>> decode(const QByteArray& json);

/// What stands for `id` in the file: 8-4-4-4-12 upper-case hexadecimal digits.
[[nodiscard]] QByteArray encodedID(const QUuid& id);
/// The reverse; digits of either case. Nothing for any other form, braces included.
[[nodiscard]] std::optional<QUuid> decodedID(QByteArrayView text);

} // namespace ClipboardCore::HistoryCoding
