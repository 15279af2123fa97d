#include "KwinCompositor.h"

#include "VirtualSession.h"

#include <QFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing::KwinCompositor {

namespace {

const QString program = u"kwin_wayland"_s;

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

/// A program that notes which display the compositor's Xwayland has. It is started when all is up.
bool writeDisplayTeller(const QString& path, const QString& note)
{
    QFile file(path);
    return file.open(QFile::WriteOnly) && file.write("#!/bin/sh\necho $DISPLAY > '" + note.toLocal8Bit() + "'\n") > 0 &&
           file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace

QString missing()
{
    for (const QString& needed : {program, u"Xwayland"_s, u"wl-copy"_s, u"xterm"_s}) {
        if (QStandardPaths::findExecutable(needed).isEmpty())
            return u"%1 is not installed: no journey on kwin"_s.arg(needed);
    }
    return {};
}

QString start(VirtualSession& session, QSize size)
{
    // The installed one has a capability, with which nobody can start it in a namespace. Plasma's libraries go by its
    // name.
    const QString copy = session.homePath(program);
    const QString teller = session.homePath(u"tell-display"_s);
    const QString note = session.homePath(u"display"_s);
    if (!QFile::copy(QStandardPaths::findExecutable(program), copy) || !writeDisplayTeller(teller, note))
        return u"%1 cannot be written"_s.arg(copy);
    const QString socket = u"wayland-journey"_s;
    session.setEnvironment(u"XDG_SESSION_TYPE"_s, u"wayland"_s);
    // Programs are known by the desktop file of the installed one, which these are not.
    session.setEnvironment(u"KWIN_WAYLAND_NO_PERMISSION_CHECKS"_s, u"1"_s);
    // Of its two ways to paint, both without a graphics card, this is the one that shows what it has painted.
    session.setEnvironment(u"KWIN_COMPOSE"_s, u"O2"_s);
    session.setEnvironment(u"KWIN_SCREENSHOT_NO_PERMISSION_CHECKS"_s, u"1"_s);
    const QString log = session.homePath(u"kwin.log"_s);
    const QProcess& kwin =
        session.start(copy,
                      {u"--virtual"_s, u"--no-lockscreen"_s, u"--xwayland"_s, u"--socket"_s, socket, u"--width"_s,
                       QString::number(size.width()), u"--height"_s, QString::number(size.height()), teller},
                      {}, log);
    const auto isUp = [&] { return !contentOf(note).trimmed().isEmpty() || kwin.state() == QProcess::NotRunning; };
    if (!VirtualSession::waitUntil(isUp) || kwin.state() == QProcess::NotRunning)
        return u"kwin did not come up: %1"_s.arg(QString::fromLocal8Bit(contentOf(log)));
    session.liveWith(kwin);
    session.setEnvironment(u"WAYLAND_DISPLAY"_s, socket);
    session.setEnvironment(u"DISPLAY"_s, QString::fromLocal8Bit(contentOf(note)).trimmed());
    return {};
}

} // namespace Clipboard::Testing::KwinCompositor
