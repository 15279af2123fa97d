#include "Annotation/AnnotationColor.h"

#include <algorithm>

namespace ClipboardCore {

std::optional<AnnotationColor> AnnotationColor::withID(QStringView id)
{
    const auto* found =
        std::ranges::find_if(AnnotationPalette::colors, [id](const AnnotationColor& color) { return color.id == id; });
    if (found == AnnotationPalette::colors.end())
        return std::nullopt;
    return *found;
}

AnnotationColor AnnotationColor::contrasting() const
{
    constexpr double lightFrom = 0.6;
    const double luminance = 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    return luminance > lightFrom ? AnnotationPalette::black : AnnotationPalette::white;
}

} // namespace ClipboardCore
