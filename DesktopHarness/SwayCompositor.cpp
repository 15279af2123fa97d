#include "SwayCompositor.h"

#include "VirtualSession.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing::SwayCompositor {

namespace {

QByteArray configuration(QSize size)
{
    return "output HEADLESS-1 resolution " + QByteArray::number(size.width()) + 'x' +
           QByteArray::number(size.height()) +
           "\n"
           "default_border none\n"
           // Beside another window it would get half the screen, and show its picture smaller than it is.
           "for_window [title=\"^Annotate$\"] floating enable\n";
}

QString firstOf(const QString& folder, const QString& pattern)
{
    const QStringList found = QDir(folder).entryList({pattern}, QDir::System);
    return found.isEmpty() ? QString() : found.first();
}

/// The compositor alone knows which display its Xwayland has; what it starts is told.
QString findDisplay(VirtualSession& session)
{
    QFile file(session.homePath(u"display"_s));
    session.run(u"swaymsg"_s, {u"exec echo $DISPLAY > '%1'"_s.arg(file.fileName())});
    QString display;
    const auto isTold = [&] {
        display = file.open(QFile::ReadOnly) ? QString::fromLocal8Bit(file.readAll()).trimmed() : QString();
        file.close();
        return !display.isEmpty();
    };
    return VirtualSession::waitUntil(isTold) ? display : QString();
}

} // namespace

QString missing()
{
    for (const QString& program : {u"sway"_s, u"Xwayland"_s, u"wl-copy"_s, u"grim"_s, u"foot"_s}) {
        if (QStandardPaths::findExecutable(program).isEmpty())
            return u"%1 is not installed: no journey on Wayland"_s.arg(program);
    }
    return {};
}

QString start(VirtualSession& session, QSize size)
{
    const QString file = session.homePath(u"sway.conf"_s);
    QFile config(file);
    if (!config.open(QFile::WriteOnly) || config.write(configuration(size)) < 0)
        return config.errorString();
    config.close();
    session.setEnvironment(u"XDG_SESSION_TYPE"_s, u"wayland"_s);
    session.setEnvironment(u"WLR_BACKENDS"_s, u"headless"_s);
    session.setEnvironment(u"WLR_LIBINPUT_NO_DEVICES"_s, u"1"_s);
    session.setEnvironment(u"WLR_RENDERER"_s, u"pixman"_s);
    const QString log = session.homePath(u"sway.log"_s);
    const QProcess& sway = session.start(u"sway"_s, {u"--config"_s, file}, {}, log);

    const QString runtime = session.environment().value(u"XDG_RUNTIME_DIR"_s);
    const auto isUp = [&] {
        // Either may be there before the other.
        const QString display = firstOf(runtime, u"wayland-?"_s);
        session.setEnvironment(u"WAYLAND_DISPLAY"_s, display);
        session.setEnvironment(u"SWAYSOCK"_s, runtime + u'/' + firstOf(runtime, u"sway-ipc.*"_s));
        const bool answers = !display.isEmpty() && session.run(u"swaymsg"_s, {u"-t"_s, u"get_version"_s}).exitCode == 0;
        return answers || sway.state() == QProcess::NotRunning;
    };
    if (!VirtualSession::waitUntil(isUp) || sway.state() == QProcess::NotRunning) {
        QFile said(log);
        return u"sway did not come up: %1"_s.arg(said.open(QFile::ReadOnly) ? QString::fromLocal8Bit(said.readAll())
                                                                            : QString());
    }
    session.setEnvironment(u"DISPLAY"_s, findDisplay(session));
    return {};
}

void bindKey(VirtualSession& session, const QString& program)
{
    session.run(u"swaymsg"_s, {u"bindsym --no-repeat Mod4+Shift+v exec '%1' toggle"_s.arg(program)});
}

} // namespace Clipboard::Testing::SwayCompositor
