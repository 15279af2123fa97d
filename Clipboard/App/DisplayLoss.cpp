#include "DisplayLoss.h"

#include <QCoreApplication>
#include <QFile>
#include <QThread>

#include <unistd.h>

#include <csignal>
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

/// Starts the program anew in this process, which whoever started it still knows. Returns when that cannot be done, or
/// has been done so often that it would go on for ever.
void startAnew()
{
    constexpr const char* counter = "TESSALY_STARTED_ANEW";
    constexpr int mostStarts = 10;
    const int starts = qEnvironmentVariableIntValue(counter);
    if (starts >= mostStarts)
        return;
    qputenv(counter, QByteArray::number(starts + 1));
    QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
    char* const arguments[] = {program.data(), nullptr};
    ::execv(program.constData(), arguments);
}

} // namespace

DisplayLoss::DisplayLoss(std::function<bool()> isLost, std::function<void()> save, std::function<bool()> isBack)
    : m_isLost(std::move(isLost))
    , m_save(std::move(save))
    , m_isBack(std::move(isBack))
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
    std::fputs("tessaly: the display is gone; the history is saved\n", stderr);
    watch->m_save();
    // Nothing is left to do for who wants it to end meanwhile.
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP})
        std::signal(signalNumber, SIG_DFL);
    if (watch->m_isBack()) {
        std::fputs("tessaly: the display is back, and the program starts anew\n", stderr);
        startAnew();
    }
    std::fputs("tessaly: the program ends\n", stderr);
    std::_Exit(EXIT_FAILURE); // other threads still use what exit() would destroy
}

} // namespace Clipboard
