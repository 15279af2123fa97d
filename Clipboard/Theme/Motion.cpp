#include "Motion.h"

namespace Clipboard::Motion {

namespace {
bool reducedMotion = false;
} // namespace

int duration(int milliseconds)
{
    return reducedMotion ? 0 : milliseconds;
}

bool isReduced()
{
    return reducedMotion;
}

void setReduced(bool reduced)
{
    reducedMotion = reduced;
}

} // namespace Clipboard::Motion
