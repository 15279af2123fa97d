#pragma once

#include <QByteArray>

#include <optional>

/// XML 1.0 documents laid out anew, with every byte of their markup as it was.
namespace ClipboardCore::XMLText {

/// More open elements than this are an attack on the indentation, not a document.
inline constexpr qsizetype deepestNesting = 512;

/// Qt's parser copies names of any length into fixed-width counters, and versions in use overflow them.
inline constexpr qsizetype longestName = 1024;

/// `utf8`, trimmed, as ContentDetectors::formattedXML() describes it; the caller bounds its size. Nothing when the
/// result would be larger than `limit` bytes.
[[nodiscard]] std::optional<QByteArray> formatted(QByteArrayView utf8, qsizetype limit);

} // namespace ClipboardCore::XMLText
