#include "Motion.h"

#include "DesktopMotion.h"

#include <QCoreApplication>

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

void followDesktop()
{
    static const auto* const desktop = new DesktopMotion(QCoreApplication::instance());
    Q_UNUSED(desktop)
}

} // namespace Clipboard::Motion
