#pragma once

#include "Support/Utf8Text.h"

#include <QStringView>

#include <optional>

/// Colour literals as numbers.
namespace ClipboardCore::ColorMath {

/// sRGB components, each 0 to 255.
struct RGB
{
    int r = 0;
    int g = 0;
    int b = 0;
    bool operator==(const RGB&) const = default;
};

/// Hue in degrees 0 to 360, saturation and lightness in percent.
struct HSL
{
    int h = 0;
    int s = 0;
    int l = 0;
    bool operator==(const HSL&) const = default;
};

/// Reads #RGB, #RRGGBB or #RRGGBBAA (CSS Color 4, section 5.2) with white space around it; the alpha channel is
/// dropped. Nothing for any other text.
[[nodiscard]] std::optional<RGB> hexToRGB(QStringView text);

/// The colour that a copied text of any size is. Of its beginning no more is looked at than a literal takes, and the
/// white space that may stand before it.
[[nodiscard]] std::optional<RGB> colorOf(const Utf8Text& text);

/// Components outside 0 to 255 are the caller's fault. Values are rounded, halves away from zero; a hue just under 360
/// comes back as 360.
[[nodiscard]] HSL rgbToHSL(int r, int g, int b);

} // namespace ClipboardCore::ColorMath
