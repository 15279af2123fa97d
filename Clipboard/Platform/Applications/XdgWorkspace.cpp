#include "XdgWorkspace.h"

#include "History/CopiedFile.h"
#include "Support/CoreDumps.h"
#include "Support/UrlHost.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(log, "tessaly.workspace")

// The bus starts the file manager for us; a slow disk takes its time, but nobody waits for this.
constexpr int fileManagerLimit = 10'000; // ms

/// Starts the user's default program for it, in a session of its own that outlives ours.
void openWithDefaultProgram(const QByteArray& url)
{
    QProcess opener;
    opener.setProgram(u"xdg-open"_s);
    opener.setArguments({QString::fromLatin1(url)});
    // The program may write for hours into what were our pipes.
    opener.setStandardOutputFile(QProcess::nullDevice());
    opener.setStandardErrorFile(QProcess::nullDevice());
    const ClipboardCore::CoreDumps::AllowedForNow asItWas;
    if (!opener.startDetached())
        qCWarning(log) << "xdg-open cannot be started:" << opener.errorString();
}

/// The link in ASCII.
QByteArray encoded(const QString& link)
{
    const QUrl url(link);
    if (url.isValid())
        return url.toEncoded();
    // Qt allows no host that DNS would not: "a-.example.org" stays as it is written.
    constexpr QByteArrayView refused = "\"<>\\^`{|}";
    QByteArray result;
    for (const char c : link.toUtf8()) {
        if (c > ' ' && c < '\x7F' && !refused.contains(c))
            result += c;
        else
            result += '%' + QByteArray(1, c).toHex().toUpper();
    }
    return result;
}

/// A folder that the user has is there, and another than the home folder (which stands for "none", see
/// user-dirs.dirs(5)).
std::optional<QString> userFolder(QStandardPaths::StandardLocation location)
{
    QString folder = QStandardPaths::writableLocation(location);
    if (!QFileInfo(folder).isDir() || QDir(folder) == QDir::home())
        return std::nullopt;
    return folder;
}

} // namespace

std::optional<QString> XdgWorkspace::desktopFolder() const
{
    return userFolder(QStandardPaths::DesktopLocation);
}

QString XdgWorkspace::picturesFolder() const
{
    return userFolder(QStandardPaths::PicturesLocation).value_or(QDir::homePath());
}

void XdgWorkspace::openURL(const QString& link)
{
    const QString complete = link.startsWith("www."_L1) ? u"https://"_s + link : link;
    if (ClipboardCore::urlHost(complete.toUtf8()) || !QUrl(complete).scheme().isEmpty())
        openWithDefaultProgram(encoded(complete));
}

void XdgWorkspace::revealFile(const QString& path)
{
    const QUrl file = ClipboardCore::CopiedFile::url(path.toUtf8());
    const QByteArray folder = file.adjusted(QUrl::RemoveFilename).toEncoded();
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
            // Its message may quote the path.
            qCInfo(log) << "The file manager cannot show the file:" << answer->error().name();
            openWithDefaultProgram(folder);
        }
        answer->deleteLater();
    });
}

} // namespace Clipboard
