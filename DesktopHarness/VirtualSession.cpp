#include "VirtualSession.h"

#include "KwinCompositor.h"
#include "KwinDriver.h"
#include "SwayCompositor.h"
#include "SwayDriver.h"
#include "X11Driver.h"
#include "Xcb.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <tuple>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

namespace {

constexpr int pollInterval = 2; // ms

/// The child is killed when this process goes, however it goes.
void tieToParent(QProcess& process)
{
    const pid_t parent = getpid();
    process.setChildProcessModifier([parent] {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(1);
        }
    });
}

/// One line of the process's output, without its end; empty when none came.
QByteArray readLine(QProcess& process)
{
    QElapsedTimer clock;
    clock.start();
    while (!process.canReadLine() && process.state() != QProcess::NotRunning &&
           clock.elapsed() < VirtualSession::defaultTimeout) {
        process.waitForReadyRead(100);
    }
    return process.readLine().trimmed();
}

/// The compositors refuse to run as root, or their programs do. In a namespace each program is somebody else, one that
/// the message bus knows and who has the files of root all the same. What ties it to this process is lost on the way,
/// and set again.
QStringList launcherOnWayland()
{
    if (::getuid() != 0) {
        return {};
    }
    return u"unshare --user --map-user=1 --map-group=1 setpriv --pdeathsig KILL"_s.split(u' ');
}

bool letFocusFollowPointer(const QString& home)
{
    QDir().mkpath(home + u"/.config/openbox"_s);
    QFile settings(home + u"/.config/openbox/rc.xml"_s);
    const QByteArray content = R"(<openbox_config xmlns="http://openbox.org/3.4/rc">
        <focus><followMouse>yes</followMouse></focus></openbox_config>)";
    return settings.open(QFile::WriteOnly) && settings.write(content) == content.size();
}

} // namespace

VirtualSession::VirtualSession()
    : VirtualSession(Options{})
{
}

VirtualSession::VirtualSession(const Options& options)
    : m_kind(options.kind)
{
    m_failure = bringUp(options);
}

VirtualSession::~VirtualSession()
{
    // Programs before the window manager and the server: none of them is to complain that its display is gone.
    while (!m_processes.empty()) {
        kill(*m_processes.back());
        if (m_processes.size() == 1 && m_connection) {
            xcb_disconnect(m_connection);
            m_connection = nullptr;
        }
    }
}

QString VirtualSession::bringUp(const Options& options)
{
    if (!m_home.isValid()) {
        return m_home.errorString();
    }
    prepareEnvironment();
    if (options.kind == Kind::x11) {
        return bringUpX11(options);
    }
    return bringUpWayland(options);
}

QString VirtualSession::bringUpWayland(const Options& options)
{
    std::unique_ptr<WaylandDriver> person;
    if (options.kind == Kind::kwin) {
        person = std::make_unique<KwinDriver>(*this, options.size);
    } else {
        person = std::make_unique<SwayDriver>(*this);
    }
    m_launcher = launcherOnWayland();
    if (QString failure = startMessageBus(); !failure.isEmpty()) {
        return failure;
    }
    const auto& start = options.kind == Kind::kwin ? KwinCompositor::start : SwayCompositor::start;
    if (QString failure = start(*this, options.size); !failure.isEmpty()) {
        return failure;
    }
    if (!person->plugIn()) {
        return u"There is no keyboard or no mouse."_s;
    }
    m_desktop = std::move(person);
    return connectToServer();
}

QString VirtualSession::bringUpX11(const Options& options)
{
    if (QString failure = startServer(options); !failure.isEmpty()) {
        return failure;
    }
    if (QString failure = startMessageBus(); !failure.isEmpty()) {
        return failure;
    }
    if (options.windowManager) {
        if (options.focusFollowsPointer && !letFocusFollowPointer(home())) {
            return u"The window manager's settings could not be written."_s;
        }
        if (QString failure = startOwner(u"openbox"_s, {u"--sm-disable"_s}, "WM_S0"); !failure.isEmpty()) {
            return failure;
        }
        if (!managesWindows()) {
            return u"The window manager takes no windows in."_s;
        }
    }
    if (options.compositor) {
        if (QString failure = startOwner(u"picom"_s, {u"--backend"_s, u"xrender"_s}, "_NET_WM_CM_S0");
            !failure.isEmpty()) {
            return failure;
        }
    }
    if (options.trayHost) {
        const QStringList arguments =
            u"--edge top --align right --widthtype request --height 28 --distance 0"_s.split(u' ');
        return startOwner(u"trayer"_s, arguments, "_NET_SYSTEM_TRAY_S0");
    }
    return {};
}

/// True once the window manager takes windows in: it takes its place before it listens for them. One that is mapped in
/// between is found among those that were there before, which get no focus.
bool VirtualSession::managesWindows() const
{
    const xcb_window_t window = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, Xcb::root(m_connection), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const bool managed = waitUntil([&] {
        xcb_map_window(m_connection, window);
        return !Xcb::property(m_connection, window, "WM_STATE").isEmpty(); // set by the window manager alone
    });
    xcb_destroy_window(m_connection, window);
    xcb_flush(m_connection);
    return managed;
}

void VirtualSession::prepareEnvironment()
{
    m_environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : m_environment.keys()) {
        if (name.startsWith("XDG_"_L1) || name.startsWith("QT_"_L1) || name.startsWith("WAYLAND_"_L1) ||
            name.startsWith("CLIPBOARD_"_L1)) {
            m_environment.remove(name);
        }
    }
    const QString runtime = homePath(u"run"_s);
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_environment.insert(u"HOME"_s, home());
    m_environment.insert(u"XDG_RUNTIME_DIR"_s, runtime);
    m_environment.insert(u"XDG_SESSION_TYPE"_s, u"x11"_s);
    m_environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    // Editors of the session keep their settings to themselves and start no helpers.
    m_environment.insert(u"GSETTINGS_BACKEND"_s, u"memory"_s);
    m_environment.insert(u"GIO_USE_VFS"_s, u"local"_s);
    m_environment.insert(u"NO_AT_BRIDGE"_s, u"1"_s);
}

QString VirtualSession::startServer(const Options& options)
{
    const QString screen = u"%1x%2x24"_s.arg(options.size.width()).arg(options.size.height());
    QStringList arguments = {u"-displayfd"_s, u"1"_s,  u"-screen"_s,  u"0"_s,         screen,
                             u"-dpi"_s,       u"96"_s, u"-noreset"_s, u"-nolisten"_s, u"tcp"_s};
    if (!options.framebuffer.isEmpty())
        arguments += {u"-fbdir"_s, options.framebuffer};
    QProcess& server = start(u"Xvfb"_s, arguments);
    const QByteArray number = readLine(server);
    if (number.isEmpty()) {
        return u"The X server did not start: %1"_s.arg(QString::fromLocal8Bit(server.readAllStandardError()));
    }
    m_environment.insert(u"DISPLAY"_s, u":%1"_s.arg(QLatin1StringView(number)));
    m_desktop = std::make_unique<X11Driver>(*this);
    return connectToServer();
}

QString VirtualSession::connectToServer()
{
    m_display = m_environment.value(u"DISPLAY"_s);
    m_connection = xcb_connect(m_display.toLatin1().constData(), nullptr);
    if (xcb_connection_has_error(m_connection) != 0) {
        xcb_disconnect(m_connection);
        m_connection = nullptr;
        return u"The X server does not answer on %1."_s.arg(m_display);
    }
    return {};
}

QString VirtualSession::startMessageBus()
{
    // Of the programs that a bus could start, the accessibility bus alone: no file manager of this machine comes to
    // life.
    const QString services = homePath(u"services"_s);
    QDir().mkpath(services);
    QFile::link(u"/usr/share/dbus-1/services/org.a11y.Bus.service"_s, services + u"/org.a11y.Bus.service"_s);
    QFile config(homePath(u"bus.conf"_s));
    if (!config.open(QFile::WriteOnly))
        return config.errorString();
    config.write("<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><servicedir>" +
                 QFile::encodeName(services) +
                 "</servicedir><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                 "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    config.close();
    QProcess& bus = start(u"dbus-daemon"_s, {u"--config-file"_s, config.fileName(), u"--nofork"_s, u"--nopidfile"_s,
                                             u"--print-address=1"_s});
    const QByteArray address = readLine(bus);
    if (address.isEmpty()) {
        return u"The message bus did not start: %1"_s.arg(QString::fromLocal8Bit(bus.readAllStandardError()));
    }
    m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, QString::fromLocal8Bit(address));
    return {};
}

QString VirtualSession::startOwner(const QString& program, const QStringList& arguments, const QByteArray& selection)
{
    const QProcess& process = start(program, arguments);
    const bool ready =
        waitUntil([&] { return process.state() == QProcess::NotRunning || selectionOwner(selection) != XCB_NONE; });
    if (!ready || process.state() == QProcess::NotRunning) {
        return u"%1 did not come up."_s.arg(program);
    }
    return {};
}

void VirtualSession::launch(QProcess& process, const QString& program, const QStringList& arguments)
{
    tieToParent(process);
    process.setProcessEnvironment(m_environment);
    const QStringList words = m_launcher + QStringList{program} + arguments;
    process.start(words.first(), words.sliced(1));
}

VirtualSession::Result VirtualSession::run(const QString& program, const QStringList& arguments,
                                           const QByteArray& input, int timeout)
{
    QProcess process;
    launch(process, program, arguments);
    if (!process.waitForStarted()) {
        return {-1, {}, process.errorString().toLocal8Bit()};
    }
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(timeout)) {
        process.kill();
        process.waitForFinished();
    }
    const bool ended = process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}

QProcess& VirtualSession::start(const QString& program, const QStringList& arguments, const QByteArray& input,
                                const QString& errorFile)
{
    QProcess& process = *m_processes.emplace_back(std::make_unique<QProcess>());
    process.setWorkingDirectory(home());
    if (!errorFile.isEmpty()) {
        process.setStandardErrorFile(errorFile);
    }
    launch(process, program, arguments);
    if (process.waitForStarted()) {
        process.write(input);
        while (process.bytesToWrite() > 0 && process.waitForBytesWritten()) {
        }
        process.closeWriteChannel();
    }
    return process;
}

void VirtualSession::liveWith(const QProcess& process)
{
    if (!m_launcher.isEmpty()) {
        m_launcher =
            u"nsenter --user --preserve-credentials --target %1 setpriv --pdeathsig KILL"_s.arg(process.processId())
                .split(u' ');
    }
}

/// A connection belongs to the process that connects, whoever has it later (unix(7), SO_PEERCRED).
int VirtualSession::connectToCompositor()
{
    const QString socket = m_environment.value(u"XDG_RUNTIME_DIR"_s) + u'/' + m_environment.value(u"WAYLAND_DISPLAY"_s);
    const int connection = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const QString connecting = u"$| = 1; open(S, '+<&=', $ARGV[0]) and connect(S, pack_sockaddr_un($ARGV[1])) or die;"
                               "print \"connected\\n\"; sleep"_s;
    QProcess& program = start(u"perl"_s, {u"-MSocket"_s, u"-e"_s, connecting, QString::number(connection), socket});
    ::fcntl(connection, F_SETFD, FD_CLOEXEC);
    if (readLine(program) == "connected") {
        return connection;
    }
    ::close(connection);
    return -1;
}

void VirtualSession::kill(QProcess& process)
{
    process.kill();
    process.waitForFinished();
    std::erase_if(m_processes, [&](const auto& owned) { return owned.get() == &process; });
}

void VirtualSession::crashDisplay()
{
    // A compositor needs the message bus, which is started before it.
    QProcess& display = *m_processes[m_kind == Kind::x11 ? 0 : 1];
    display.kill();
    display.waitForFinished();
}

/// kwin 5.27 asks Xwayland about what it hears from it, and waits for ever when it dies meanwhile: the other end of the
/// connection is kwin's as well. So it has to have looked at all there is to hear, as it does between two answers to
/// others.
void VirtualSession::crashXwayland()
{
    Xcb::synchronize(m_connection);
    for (int answers = 0; answers < 2; ++answers)
        std::ignore = m_desktop->activeWindow();
    const QString compositor = QString::number(m_processes[1]->processId());
    run(u"sh"_s, {u"-c"_s, u"kill -KILL $(cat /proc/%1/task/*/children)"_s.arg(compositor)});
}

bool VirtualSession::screenshot(const QString& path)
{
    if (m_kind == Kind::kwin) {
        return run(u"convert"_s, {u"ppm:-"_s, path}, m_desktop->pixels()).exitCode == 0;
    }
    if (m_kind == Kind::sway) {
        return run(u"grim"_s, {path}).exitCode == 0;
    }
    return run(u"import"_s, {u"-window"_s, u"root"_s, path}).exitCode == 0;
}

quint32 VirtualSession::selectionOwner(const QByteArray& selection) const
{
    return Xcb::selectionOwner(m_connection, Xcb::atom(m_connection, selection));
}

bool VirtualSession::waitUntil(const std::function<bool()>& condition, int timeout)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > timeout) {
            return false;
        }
        QCoreApplication::processEvents();
        QThread::msleep(pollInterval);
    }
    return true;
}

} // namespace Clipboard::Testing
