#pragma once

#include "Annotation/Annotation.h"

#include <QLatin1StringView>
#include <QString>

#include <array>
#include <optional>

namespace ClipboardCore {

/// What a click or a drag on the canvas does. The order is the toolbar's.
enum class AnnotationTool { crop, arrow, rectangle, text, highlighter, pixelate, counter };

inline constexpr std::array allAnnotationTools{
    AnnotationTool::crop,        AnnotationTool::arrow,    AnnotationTool::rectangle, AnnotationTool::text,
    AnnotationTool::highlighter, AnnotationTool::pixelate, AnnotationTool::counter};

/// The kind of mark that a tool makes; nothing for the crop, which is no mark.
[[nodiscard]] std::optional<Annotation::Kind> annotationKind(AnnotationTool of);

/// Translated: "Arrow".
[[nodiscard]] QString label(AnnotationTool of);
/// Translated, the label and the shortcut letter: "Arrow (A)".
[[nodiscard]] QString toolTip(AnnotationTool of);
/// Translated, what the tool does, for below the canvas: "Drag to draw an arrow".
[[nodiscard]] QString hint(AnnotationTool of);
/// The name of its icon: "arrow.up.right".
[[nodiscard]] QLatin1StringView symbolName(AnnotationTool of);
/// The key that chooses it, in upper case.
[[nodiscard]] QChar shortcutLetter(AnnotationTool of);

} // namespace ClipboardCore
