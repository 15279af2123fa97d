#include "ProgramStyle.h"

#include <QStyleFactory>

using namespace Qt::StringLiterals;

namespace Clipboard {

ProgramStyle::ProgramStyle()
    : QProxyStyle(QStyleFactory::create(u"fusion"_s))
{
}

int ProgramStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    if (metric == PM_TextCursorWidth)
        return 0; // text fields have a caret of their own
    return QProxyStyle::pixelMetric(metric, option, widget);
}

} // namespace Clipboard
