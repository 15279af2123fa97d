#pragma once

#include <QByteArray>
#include <QVariant>

#include <optional>

/// Contents as they travel: bytes up to largestInlineContent, beyond that a file descriptor to read them from.
namespace Clipboard::Bus {

/// Copies a large content: never on the main thread. Nothing when the system has no memory for it.
[[nodiscard]] std::optional<QVariant> toWire(const QByteArray& content);

/// What was handed over, `limit` bytes at most. Nothing for anything else: a descriptor must be of a file or of memory,
/// so that reading it waits for nobody. Takes its time, as toWire().
[[nodiscard]] std::optional<QByteArray> fromWire(const QVariant& content, qint64 limit);

} // namespace Clipboard::Bus
