#include "XdgWorkspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QProcess>
#include <QStandardPaths>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(log, "tessaly.workspace")

// The bus starts the file manager for us; a slow disk takes its time, but nobody waits for this.
constexpr int fileManagerLimit = 10'000; // ms

/// Starts the user's default program for it, in a session of its own that outlives ours.
void openWithDefaultProgram(const QUrl& url)
{
    QProcess opener;
    opener.setProgram(u"xdg-open"_s);
    opener.setArguments({QString::fromLatin1(url.toEncoded())});
    // The program may write for hours into what were our pipes.
    opener.setStandardOutputFile(QProcess::nullDevice());
    opener.setStandardErrorFile(QProcess::nullDevice());
    if (!opener.startDetached())
        qCWarning(log) << "xdg-open cannot be started:" << opener.errorString();
}

} // namespace

std::optional<QString> XdgWorkspace::desktopFolder() const
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    return QFileInfo(folder).isDir() ? std::optional(folder) : std::nullopt;
}

void XdgWorkspace::openURL(const QUrl& url)
{
    QUrl complete = url;
    if (url.isRelative() && url.path().startsWith("www."_L1))
        complete = QUrl(u"https://"_s + url.toString(QUrl::FullyEncoded));
    if (complete.isValid() && !complete.isRelative())
        openWithDefaultProgram(complete);
}

void XdgWorkspace::revealFile(const QString& path)
{
    const QUrl file = QUrl::fromLocalFile(path);
    const QUrl folder = file.adjusted(QUrl::RemoveFilename);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openWithDefaultProgram(folder);
        return;
    }

    QDBusMessage request =
        QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                       u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    const QString startupID; // none: we cannot tell the time of the key press
    request.setArguments({QStringList{QString::fromLatin1(file.toEncoded())}, startupID});

    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(request, fileManagerLimit), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [answer, folder] {
        if (answer->isError()) {
            qCInfo(log) << "The file manager cannot show the file:" << answer->error().message();
            openWithDefaultProgram(folder);
        }
        answer->deleteLater();
    });
}

} // namespace Clipboard
