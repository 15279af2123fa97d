#include "SmartActionLabel.h"

#include <QCoreApplication>

namespace Clipboard {

QString shownActionLabel(const QString& label)
{
    return QCoreApplication::translate("SmartActions", label.toUtf8().constData());
}

} // namespace Clipboard
