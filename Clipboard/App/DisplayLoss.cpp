#include "DisplayLoss.h"

#include <QCoreApplication>
#include <QThread>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace Clipboard {

namespace {

std::mutex guard; // of what follows
DisplayLoss* watch = nullptr;
bool isHoldingThread = false;

QtMessageHandler reportBefore = nullptr;

} // namespace

DisplayLoss::DisplayLoss(std::function<bool()> isLost, std::function<void()> save)
    : m_isLost(std::move(isLost))
    , m_save(std::move(save))
{
    {
        const std::scoped_lock lock(guard);
        watch = this;
    }
    reportBefore = qInstallMessageHandler(&hear);
}

DisplayLoss::~DisplayLoss()
{
    qInstallMessageHandler(reportBefore);
    const std::scoped_lock lock(guard);
    watch = nullptr;
    if (isHoldingThread)
        std::_Exit(EXIT_FAILURE); // the toolkit would wait for it
}

/// The toolkit warns before it leaves, and asks nobody. On Wayland each of its threads for the connection does so for
/// itself.
void DisplayLoss::hear(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    reportBefore(type, context, message);
    // Our own messages have categories of their own, and may come from the middle of something.
    if (type != QtWarningMsg || qstrcmp(context.category, "default") != 0)
        return;
    const QThread* thread = QThread::currentThread();
    const bool isMain = thread == QCoreApplication::instance()->thread();
    if (!isMain && !thread->inherits("QtWaylandClient::EventThread"))
        return;
    {
        const std::scoped_lock lock(guard);
        if (watch == nullptr || !watch->m_isLost())
            return;
        isHoldingThread = isHoldingThread || !isMain;
    }
    if (isMain)
        return leave();
    QMetaObject::invokeMethod(QCoreApplication::instance(), &leave, Qt::QueuedConnection);
    for (;;)
        ::pause(); // it would end the process next
}

void DisplayLoss::leave()
{
    static bool isLeaving = false;
    if (watch == nullptr || std::exchange(isLeaving, true))
        return;
    std::fputs("tessaly: the display is gone; the history is saved, and the program ends\n", stderr);
    watch->m_save();
    std::_Exit(EXIT_FAILURE); // other threads still use what exit() would destroy
}

} // namespace Clipboard
