#pragma once

#include <QLatin1StringView>
#include <QStringView>

#include <array>
#include <optional>

namespace ClipboardCore {

/// How large a mark is. It stands for no fixed number of pixels: every measure is a share of the picture's longest
/// side, so that marks look alike on a small and on a large picture, with a minimum that stays legible.
enum class AnnotationSize { small, medium, large };

inline constexpr std::array allAnnotationSizes{AnnotationSize::small, AnnotationSize::medium, AnnotationSize::large};

/// The name under which a size is stored: "small", "medium" or "large".
[[nodiscard]] QLatin1StringView rawValue(AnnotationSize size);

/// The size with exactly this raw value; nothing when there is none.
[[nodiscard]] std::optional<AnnotationSize> annotationSizeFromRawValue(QStringView rawValue);

// Measures in whole picture pixels; `longestSide` is the larger of the picture's width and height.
[[nodiscard]] double strokeWidth(AnnotationSize size, int longestSide);
[[nodiscard]] double counterDiameter(AnnotationSize size, int longestSide);
[[nodiscard]] double fontSize(AnnotationSize size, int longestSide);

} // namespace ClipboardCore
