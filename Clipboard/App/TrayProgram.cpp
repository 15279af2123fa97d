#include "TrayProgram.h"

#include "AppDelegate.h"
#include "BusNames.h"
#include "DataFolder.h"
#include "InstanceLock.h"
#include "ProcessSignals.h"
#include "RunningInstance.h"
#include "Support/CoreDumps.h"
#include "Support/PrivateFolder.h"
#include "Theme.h"
#include "Translations.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int cannotRun = 1;

/// Says so when nothing could be shown anywhere.
bool hasNoDisplay()
{
    const bool hasNone = qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
                         !qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (hasNone)
        std::fputs("tessaly: there is no display to run on (DISPLAY and WAYLAND_DISPLAY are empty)\n", stderr);
    return hasNone;
}

/// What the toolkit left of the arguments is unknown to both.
bool hasUnknownArgument()
{
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() <= 1)
        return false;
    std::fprintf(stderr, "tessaly: unknown argument '%s'; try --help\n", qPrintable(arguments.at(1)));
    return true;
}

/// Stands in for the toolkit's own reports while it looks for a display: one on each kind that cannot be reached, and
/// then it aborts.
void reportDisplay(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*message*/)
{
    if (type != QtFatalMsg)
        return;
    std::fprintf(stderr, "tessaly: the display cannot be reached (DISPLAY is '%s', WAYLAND_DISPLAY is '%s')\n",
                 qgetenv("DISPLAY").constData(), qgetenv("WAYLAND_DISPLAY").constData());
    std::_Exit(cannotRun);
}

/// What the windows are made with, unless the user has chosen. The choice is not handed on to the programs that are
/// started from here.
class DisplayChoice final
{
public:
    explicit DisplayChoice(const Clipboard::Wayland::WaylandSession& compositor)
        : m_reportBefore(qInstallMessageHandler(&reportDisplay))
        , m_isOurs(!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
    {
        const QByteArray kinds = Clipboard::prepareWindows(compositor);
        if (m_isOurs)
            qputenv("QT_QPA_PLATFORM", kinds);
    }
    ~DisplayChoice()
    {
        Clipboard::finishWindows();
        qInstallMessageHandler(m_reportBefore);
        if (m_isOurs)
            qunsetenv("QT_QPA_PLATFORM");
    }
    Q_DISABLE_COPY_MOVE(DisplayChoice)

private:
    QtMessageHandler m_reportBefore;
    bool m_isOurs;
};

/// Gives large blocks back to the system as soon as they are freed. Left alone, the allocator raises its limit to the
/// largest block that it ever freed (mallopt(3)), and what a large picture once took would never come back.
void returnLargeBlocks()
{
    constexpr int largeBlock = 4 << 20;
    mallopt(M_MMAP_THRESHOLD, largeBlock);
    mallopt(M_TRIM_THRESHOLD, 2 * largeBlock);
}

/// The display that this process is shown on, to tell it from others.
QByteArray displayName()
{
    const bool isX11 = QGuiApplication::platformName() == "xcb"_L1;
    const QByteArray name = qgetenv(isX11 ? "DISPLAY" : "WAYLAND_DISPLAY");
    const qsizetype screen = name.indexOf('.', name.lastIndexOf(':')); // ":0.0" is a screen of ":0"
    return isX11 && screen >= 0 ? name.first(screen) : name;
}

/// Two writers would lose each other's copies. Where there are no locks, the name on the bus has to do.
bool isKeptByAnother(const Clipboard::Bus::InstanceLock& lock)
{
    using State = Clipboard::Bus::InstanceLock::State;
    return lock.state() == State::heldByAnother ||
           (lock.state() == State::unsupported && Clipboard::Bus::RunningInstance::isAnnounced());
}

/// Has the process that keeps the history open its panel, and tells what became of that. The exit code.
int leaveToTheRunningOne(const QByteArray& itsDisplay)
{
    constexpr int cannotBeReached = 3;
    const auto fail = [](const char* reason) {
        std::fprintf(stderr, "tessaly: already running, %s\n", reason);
        return cannotBeReached;
    };
    if (!itsDisplay.isEmpty() && itsDisplay != displayName())
        return fail(("on the display " + itsDisplay + "; it is there that its panel opens").constData());
    switch (Clipboard::Bus::RunningInstance::activate()) {
    case Clipboard::Bus::RunningInstance::Answer::noBus:
        return fail("and cannot be asked to open its panel: there is no session bus");
    case Clipboard::Bus::RunningInstance::Answer::noAnswer:
        return fail("but it does not answer");
    case Clipboard::Bus::RunningInstance::Answer::done:
        break;
    }
    std::fputs("tessaly: already running; its panel opens\n", stderr);
    return 0;
}

} // namespace

int runTrayProgram(int argc, char** argv)
{
    if (hasNoDisplay())
        return cannotRun;
    ClipboardCore::CoreDumps::forbid();
    returnLargeBlocks();
    Clipboard::ProcessSignals::install();
    const auto compositor = Clipboard::Wayland::WaylandSession::look();
    std::optional<DisplayChoice> displayChoice(std::in_place, compositor);
    QApplication application(argc, argv);
    displayChoice.reset();
    QApplication::setApplicationName(u"Tessaly"_s);
    QApplication::setOrganizationName(u"Tessaly"_s);
    QApplication::setApplicationVersion(QStringLiteral(TESSALY_VERSION));
    QApplication::setDesktopFileName(u"com.tessaly.Tessaly"_s);
    QApplication::setQuitOnLastWindowClosed(false);
    if (hasUnknownArgument())
        return 2;

    const QString dataFolder = Clipboard::Bus::dataFolder();
    ClipboardCore::createPrivateFolder(dataFolder);
    ClipboardCore::makePrivate(dataFolder);
    Clipboard::Bus::InstanceLock lock(dataFolder + u"/lock"_s, displayName());
    if (isKeptByAnother(lock))
        return leaveToTheRunningOne(lock.holdersDisplay());

    Clipboard::Theme::install();
    Clipboard::installTranslations(application);
    Clipboard::AppDelegate delegate(application, Clipboard::loadPlatform(compositor), dataFolder);
    const Clipboard::ProcessSignals processSignals;
    // Not quit(), which asks every window and gives up when one stays.
    QObject::connect(&processSignals, &Clipboard::ProcessSignals::quitRequested, &application,
                     [] { QCoreApplication::exit(); });
    const Clipboard::DataFolder folder(dataFolder);
    QObject::connect(&folder, &Clipboard::DataFolder::mayBeAnother, &application, [&lock, &delegate] {
        lock.renew();
        delegate.keepHistory();
    });
    delegate.announce();
    return QApplication::exec();
}
