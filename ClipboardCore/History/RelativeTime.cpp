#include "History/RelativeTime.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace ClipboardCore::RelativeTime {

namespace {

constexpr double minute = 60;
constexpr double hour = 60 * minute;
constexpr double day = 24 * hour;

QString whole(double value)
{
    return QString::number(std::trunc(value), 'f', 0);
}

} // namespace

QString label(double from, double to)
{
    const double elapsed = to - from;
    if (!std::isfinite(elapsed) || elapsed < minute)
        return u"now"_s;
    if (elapsed < hour)
        return whole(elapsed / minute) + u'm';
    if (elapsed < day)
        return whole(elapsed / hour) + u'h';
    if (elapsed < 2 * day)
        return u"yesterday"_s;
    return whole(elapsed / day) + u'd';
}

} // namespace ClipboardCore::RelativeTime
