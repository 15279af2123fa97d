#include "SessionStatus.h"

#include "PlatformLoader.h"
#include "ServiceNotices.h"

#include <QCoreApplication>
#include <QString>
#include <QSystemTrayIcon>

namespace Clipboard::SessionStatus {

using namespace Qt::StringLiterals;

namespace {

QVariantMap service(const QString& name, const QString& reason, const QString& advice)
{
    const bool works = reason.isEmpty();
    return {{u"name"_s, name}, {u"works"_s, works}, {u"reason"_s, reason}, {u"advice"_s, works ? QString() : advice}};
}

QString text(const char* source)
{
    return QCoreApplication::translate("SessionStatus", source);
}

QVariantMap history(const ServiceNotices& notices)
{
    const QString name = u"history"_s;
    const QString locked = notices.textOf(u"encryption"_s);
    if (!locked.isEmpty())
        return service(name, locked,
                       text(QT_TRANSLATE_NOOP("SessionStatus", "It opens as soon as your keyring does.")));
    return service(
        name, notices.textOf(u"save"_s),
        text(QT_TRANSLATE_NOOP("SessionStatus", "Make room on the disk, and see who owns the data folder.")));
}

} // namespace

QVariantList services(const Platform& platform, const ServiceNotices& notices, const QString& workerProblem)
{
    const QString bindKey =
        text(QT_TRANSLATE_NOOP("SessionStatus", "Have your desktop run this on a key of its own: tessaly toggle"));
    const QString tray = QSystemTrayIcon::isSystemTrayAvailable()
                             ? QString()
                             : text(QT_TRANSLATE_NOOP("SessionStatus", "There is no tray in this session."));
    QVariantMap hotKey = service(u"hot-key"_s, notices.textOf(u"hot-key"_s), bindKey);
    if (hotKey.value(u"works"_s).toBool())
        hotKey.insert(u"holder"_s, platform.hotKey->holder());
    return {
        service(u"clipboard"_s, platform.pasteboard->unavailableReason(),
                text(QT_TRANSLATE_NOOP("SessionStatus", "Start Tessaly in a session that offers it."))),
        service(u"paste"_s, platform.keystrokes->unavailableReason(),
                text(QT_TRANSLATE_NOOP("SessionStatus",
                                       "Choose an entry, then press the keys for pasting: it is on the clipboard."))),
        hotKey,
        service(u"tray"_s, tray, bindKey),
        service(u"worker"_s, workerProblem,
                text(QT_TRANSLATE_NOOP("SessionStatus", "Use Linux 5.13 or newer, and install Tessaly whole."))),
        history(notices),
    };
}

} // namespace Clipboard::SessionStatus
