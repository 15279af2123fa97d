#pragma once

#include <QStringView>

#include <array>
#include <optional>

namespace ClipboardCore {

/// The kind of a history entry. The order is the order of the panel's filter chips.
enum class ClipType { text, link, image, color, code, file };

inline constexpr std::array allClipTypes{ClipType::text,  ClipType::link, ClipType::image,
                                         ClipType::color, ClipType::code, ClipType::file};

/// The name under which a type is stored and shown on its badge: "text", "link", "image", "color", "code" or "file".
[[nodiscard]] QLatin1String rawValue(ClipType type);

/// The type with this raw value; nothing when there is none.
[[nodiscard]] std::optional<ClipType> clipTypeFromRawValue(QStringView rawValue);

} // namespace ClipboardCore
