#pragma once

#include <QLatin1StringView>
#include <QStringView>

#include <array>
#include <optional>

namespace ClipboardCore {

/// An opaque sRGB colour with a name; the colour value of the whole annotation editor, its drawing ports included.
struct AnnotationColor
{
    QLatin1StringView id; // refers to a literal
    double red = 0;       // components 0 to 1
    double green = 0;
    double blue = 0;

    /// The palette's colour with exactly this id; nothing for any other text.
    [[nodiscard]] static std::optional<AnnotationColor> withID(QStringView id);

    /// Black or white, whichever is read better on this colour (relative luminance of ITU-R BT.709's primaries).
    [[nodiscard]] AnnotationColor contrasting() const;

    bool operator==(const AnnotationColor&) const = default;
};

/// The colours that marks can have, in the toolbar's order.
namespace AnnotationPalette {

inline constexpr AnnotationColor red{QLatin1StringView("red"), 1.0, 0.23, 0.19};
inline constexpr AnnotationColor yellow{QLatin1StringView("yellow"), 1.0, 0.8, 0.0};
inline constexpr AnnotationColor green{QLatin1StringView("green"), 0.2, 0.78, 0.35};
inline constexpr AnnotationColor blue{QLatin1StringView("blue"), 0.0, 0.48, 1.0};
inline constexpr AnnotationColor black{QLatin1StringView("black"), 0.0, 0.0, 0.0};
inline constexpr AnnotationColor white{QLatin1StringView("white"), 1.0, 1.0, 1.0};
inline constexpr std::array colors{red, yellow, green, blue, black, white};

} // namespace AnnotationPalette

} // namespace ClipboardCore
