#include "Actions/ColorMath.h"

#include "Support/Utf8.h"
#include "Support/WhiteSpace.h"

#include <QString>

#include <algorithm>
#include <cmath>

namespace ClipboardCore::ColorMath {

namespace {

constexpr double largestComponent = 255.0;

std::optional<int> hexDigit(QChar character)
{
    const char16_t unit = character.unicode();
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0';
    const char16_t lower = unit | 0x20;
    if (lower >= u'a' && lower <= u'f' && unit < 0x80)
        return lower - u'a' + 10;
    return std::nullopt;
}

/// The value of two hexadecimal digits that are known to be such.
int component(QStringView digits, qsizetype at)
{
    return *hexDigit(digits[at]) * 16 + *hexDigit(digits[at + 1]);
}

int rounded(double value)
{
    return static_cast<int>(std::lround(value));
}

} // namespace

std::optional<RGB> hexToRGB(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    if (!trimmed.startsWith(u'#'))
        return std::nullopt;
    const QStringView digits = trimmed.mid(1);
    if (!std::all_of(digits.begin(), digits.end(), [](QChar c) { return hexDigit(c).has_value(); }))
        return std::nullopt;
    switch (digits.size()) {
    case 3:
        // #abc is short for #aabbcc: a doubled digit is the digit times 17.
        return RGB{*hexDigit(digits[0]) * 17, *hexDigit(digits[1]) * 17, *hexDigit(digits[2]) * 17};
    case 6:
    case 8:
        return RGB{component(digits, 0), component(digits, 2), component(digits, 4)};
    default:
        return std::nullopt;
    }
}

std::optional<RGB> colorOf(const Utf8Text& text)
{
    // In bytes: a literal with more blanks around it than any line has.
    constexpr qsizetype longestLine = 1024;
    return hexToRGB(Utf8::toString(WhiteSpace::trimmed(Utf8::prefix(text.utf8(), longestLine))));
}

HSL rgbToHSL(int r, int g, int b)
{
    const double red = r / largestComponent;
    const double green = g / largestComponent;
    const double blue = b / largestComponent;
    const double largest = std::max({red, green, blue});
    const double smallest = std::min({red, green, blue});
    const double lightness = (largest + smallest) * 0.5;
    const int l = rounded(lightness * 100);
    if (r == g && g == b)
        return {0, 0, l};

    const double spread = largest - smallest;
    const double saturation = spread / (lightness > 0.5 ? 2 - largest - smallest : largest + smallest);
    double sector = 0;
    if (r >= g && r >= b)
        sector = (green - blue) / spread + (green < blue ? 6 : 0);
    else if (g >= b)
        sector = (blue - red) / spread + 2;
    else
        sector = (red - green) / spread + 4;
    return {rounded(sector / 6 * 360), rounded(saturation * 100), l};
}

} // namespace ClipboardCore::ColorMath
