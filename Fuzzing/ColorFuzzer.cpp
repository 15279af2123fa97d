#include "Actions/ColorMath.h"
#include "Fuzzer.h"

using namespace ClipboardCore;

namespace {

bool isWithin(int value, int most)
{
    return value >= 0 && value <= most;
}

QString hex(const ColorMath::RGB& color)
{
    return u'#' + QString::number(0x1000000 + color.r * 0x10000 + color.g * 0x100 + color.b, 16).mid(1);
}

} // namespace

void Fuzzer::run(QByteArrayView input)
{
    const auto rgb = ColorMath::hexToRGB(text(input).toString());
    if (!rgb)
        return;
    require(isWithin(rgb->r, 255) && isWithin(rgb->g, 255) && isWithin(rgb->b, 255), "components are bytes");
    require(ColorMath::hexToRGB(hex(*rgb)) == rgb, "written out it is the same colour");
    const auto hsl = ColorMath::rgbToHSL(rgb->r, rgb->g, rgb->b);
    require(isWithin(hsl.h, 360) && isWithin(hsl.s, 100) && isWithin(hsl.l, 100), "degrees and percents");
}
