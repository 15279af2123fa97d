#include "FrameReport.h"

#include <QLoggingCategory>
#include <QMetaObject>
#include <QObject>

namespace Clipboard {

namespace {

Q_LOGGING_CATEGORY(timing, "tessaly.timing", QtWarningMsg)

} // namespace

void reportFrame(QObject* painted, const char* name)
{
    if (!timing().isDebugEnabled())
        return;
    // What is painted is flushed to the screen before the next event is served.
    QMetaObject::invokeMethod(
        painted, [name] { qCDebug(timing, "%s", name); }, Qt::QueuedConnection);
}

} // namespace Clipboard
