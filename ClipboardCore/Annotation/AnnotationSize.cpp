#include "Annotation/AnnotationSize.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace ClipboardCore {
namespace {

struct Measure
{
    double factor = 0; // of the longest side
    double minimum = 0;
};

using MeasureBySize = std::array<Measure, allAnnotationSizes.size()>;

constexpr MeasureBySize strokeWidths{{{0.002, 2}, {0.004, 4}, {0.007, 7}}};
constexpr MeasureBySize counterDiameters{{{0.015, 20}, {0.02, 28}, {0.028, 36}}};
constexpr MeasureBySize fontSizes{{{0.012, 14}, {0.017, 20}, {0.024, 28}}};

double pixels(const MeasureBySize& measures, AnnotationSize size, int longestSide)
{
    const Measure& measure = measures.at(static_cast<size_t>(size));
    return std::max(std::round(measure.factor * longestSide), measure.minimum);
}

} // namespace

QLatin1StringView rawValue(AnnotationSize size)
{
    switch (size) {
    case AnnotationSize::small:
        return "small"_L1;
    case AnnotationSize::medium:
        return "medium"_L1;
    case AnnotationSize::large:
        return "large"_L1;
    }
    Q_UNREACHABLE();
}

std::optional<AnnotationSize> annotationSizeFromRawValue(QStringView value)
{
    const auto* found =
        std::ranges::find_if(allAnnotationSizes, [value](AnnotationSize size) { return rawValue(size) == value; });
    if (found == allAnnotationSizes.end())
        return std::nullopt;
    return *found;
}

double strokeWidth(AnnotationSize size, int longestSide)
{
    return pixels(strokeWidths, size, longestSide);
}

double counterDiameter(AnnotationSize size, int longestSide)
{
    return pixels(counterDiameters, size, longestSide);
}

double fontSize(AnnotationSize size, int longestSide)
{
    return pixels(fontSizes, size, longestSide);
}

} // namespace ClipboardCore
