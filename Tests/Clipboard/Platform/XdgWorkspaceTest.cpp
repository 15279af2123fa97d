#include "NullWorkspace.h"
#include "VirtualSession.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QTest>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

const QString fileManagerName = u"org.freedesktop.FileManager1"_s;

/// A file manager on a connection of its own.
class FileManager final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    explicit FileManager(const QString& failure = {})
        : m_failure(failure)
    {
        m_bus.registerObject(u"/org/freedesktop/FileManager1"_s, this, QDBusConnection::ExportAllSlots);
        m_bus.registerService(fileManagerName);
    }
    ~FileManager() override { QDBusConnection::disconnectFromBus(m_bus.name()); }

    QStringList shown;

public slots:
    void ShowItems(const QStringList& uris, const QString& startupID) // NOLINT: the name on the bus
    {
        Q_UNUSED(startupID)
        shown.append(uris);
        if (!m_failure.isEmpty())
            sendErrorReply(QDBusError::Failed, m_failure);
    }

private:
    QString m_failure;
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"file manager"_s);
};

} // namespace

/// Folders, default programs and file manager, in a session with a message bus and a stand-in for xdg-open.
class XdgWorkspaceTest final : public QObject
{
    Q_OBJECT
public:
    explicit XdgWorkspaceTest(const VirtualSession& session)
        : m_session(session)
    {
    }

private slots:
    void init() { QFile::remove(m_opened); }
    void opensLinks_data();
    void opensLinks();
    void ignoresWhatHasNoScheme();
    void asksTheFileManager_data();
    void asksTheFileManager();
    void opensTheFolderInstead_data();
    void opensTheFolderInstead();
    void findsTheDesktop();

private:
    [[nodiscard]] QByteArray opened() const
    {
        QFile file(m_opened);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    const VirtualSession& m_session;
    QString m_opened = m_session.homePath(u"opened"_s);
    NullWorkspace m_workspace;
};

void XdgWorkspaceTest::opensLinks_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("plain") << u"https://example.org/a?b=c&d#e"_s << QByteArray("https://example.org/a?b=c&d#e\n");
    QTest::newRow("for a shell") << u"https://example.org/$(id)'\";#"_s
                                 << QByteArray("https://example.org/$(id)'%22;#\n");
    QTest::newRow("not ASCII") << u"https://example.org/\u00e9"_s << QByteArray("https://example.org/%C3%A9\n");
    QTest::newRow("host that DNS would not take")
        << u"https://a-.b/\u00e9 \"%20"_s << QByteArray("https://a-.b/%C3%A9%20%22%20\n");
    QTest::newRow("no scheme") << u"www.example.org/a?b#c"_s << QByteArray("https://www.example.org/a?b#c\n");
    QTest::newRow("long") << u"https://example.org/"_s + QString(100'000, u'a')
                          << QByteArray("https://example.org/" + QByteArray(100'000, 'a') + '\n');
}

void XdgWorkspaceTest::opensLinks()
{
    QFETCH(const QString, link);
    QFETCH(const QByteArray, expected);

    m_workspace.openURL(link);
    QTRY_COMPARE(opened(), expected);
}

void XdgWorkspaceTest::ignoresWhatHasNoScheme()
{
    m_workspace.openURL(u"--help"_s);
    m_workspace.openURL(u"/etc/passwd"_s);
    m_workspace.openURL(u"https://example.org/"_s);
    QTRY_COMPARE(opened(), "https://example.org/\n");
}

void XdgWorkspaceTest::asksTheFileManager_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << u"/tmp/a.txt"_s << u"file:///tmp/a.txt"_s;
    QTest::newRow("signs of a URL") << u"/tmp/50% #1?.txt"_s << u"file:///tmp/50%25%20%231%3F.txt"_s;
    QTest::newRow("not ASCII") << u"/tmp/\u00e9"_s << u"file:///tmp/%C3%A9"_s;
}

void XdgWorkspaceTest::asksTheFileManager()
{
    QFETCH(const QString, path);
    QFETCH(const QString, expected);

    FileManager manager;
    m_workspace.revealFile(path);
    QTRY_COMPARE(manager.shown, QStringList{expected});
    // After its answer has come, the next thing that is opened is the first.
    QVERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(fileManagerName));
    QCoreApplication::processEvents();
    m_workspace.openURL(u"https://example.org/"_s);
    QTRY_COMPARE(opened(), "https://example.org/\n");
}

void XdgWorkspaceTest::opensTheFolderInstead_data()
{
    QTest::addColumn<bool>("managerFails");

    QTest::newRow("no file manager") << false;
    QTest::newRow("one that fails") << true;
}

void XdgWorkspaceTest::opensTheFolderInstead()
{
    QFETCH(const bool, managerFails);

    const auto manager = managerFails ? std::make_unique<FileManager>(u"No display"_s) : nullptr;
    m_workspace.revealFile(u"/tmp/a b/c.txt"_s);
    QTRY_COMPARE(opened(), "file:///tmp/a%20b/\n");
}

void XdgWorkspaceTest::findsTheDesktop()
{
    QCOMPARE(m_workspace.desktopFolder(), std::nullopt);

    const QString folder = m_session.homePath(u"Schreibtisch"_s);
    QDir().mkpath(m_session.homePath(u".config"_s));
    QFile userFolders(m_session.homePath(u".config/user-dirs.dirs"_s));
    QVERIFY(userFolders.open(QIODevice::WriteOnly));
    userFolders.write("XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\nXDG_PICTURES_DIR=\"$HOME/\"\n"); // no Pictures
    userFolders.close();
    QCOMPARE(m_workspace.desktopFolder(), std::nullopt);
    QDir().mkpath(folder);
    QCOMPARE(m_workspace.desktopFolder(), folder);
    QCOMPARE(m_workspace.picturesFolder(), m_session.homePath({}));
}

int main(int argc, char** argv)
{
    const VirtualSession session({.windowManager = false});
    if (!session.failure().isEmpty()) {
        qCritical().noquote() << session.failure();
        return 1;
    }
    const auto& environment = session.environment();
    for (const QString& name : {u"HOME"_s, u"XDG_RUNTIME_DIR"_s, u"DBUS_SESSION_BUS_ADDRESS"_s})
        qputenv(name.toLatin1().constData(), environment.value(name).toLocal8Bit());
    qunsetenv("XDG_CONFIG_HOME");

    // First in the path; notes what it is given.
    const QString programs = session.homePath(u"bin"_s);
    QDir().mkpath(programs);
    QFile opener(programs + u"/xdg-open"_s);
    if (!opener.open(QIODevice::WriteOnly))
        return 1;
    opener.write("#!/bin/sh\nprintf '%s\\n' \"$@\" >> \"$HOME/opened\"\n");
    opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    opener.close();
    qputenv("PATH", programs.toLocal8Bit() + ':' + qgetenv("PATH"));

    const QCoreApplication application(argc, argv);
    XdgWorkspaceTest test(session);
    return QTest::qExec(&test, argc, argv);
}

#include "XdgWorkspaceTest.moc"
