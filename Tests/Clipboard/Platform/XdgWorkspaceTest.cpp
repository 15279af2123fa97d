#include "NullWorkspace.h"
#include "SessionTest.h"
#include "Support/CoreDumps.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/resource.h>

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
    FileManager()
    {
        m_bus.registerObject(u"/org/freedesktop/FileManager1"_s, this, QDBusConnection::ExportAllSlots);
        m_bus.registerService(fileManagerName);
    }
    ~FileManager() override
    {
        m_bus.unregisterService(fileManagerName); // has gone once this returns; a connection goes when it goes
        QDBusConnection::disconnectFromBus(m_bus.name());
    }

    QStringList shown;
    QString failure;

public slots:
    void ShowItems(const QStringList& uris, const QString& startupID) // NOLINT: the name on the bus
    {
        Q_UNUSED(startupID)
        shown.append(uris);
        if (!failure.isEmpty())
            sendErrorReply(QDBusError::Failed, failure);
    }

private:
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"file manager"_s);
};

} // namespace

/// Folders, default programs and file manager, in a session with a message bus and a stand-in for xdg-open.
class XdgWorkspaceTest final : public SessionTest
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { QFile::remove(m_session->homePath(u"opened"_s)); }
    void opensLinks();
    void asksTheFileManagerOrOpensTheFolder();
    void findsTheDesktop();

private:
    [[nodiscard]] QByteArray opened() const { return contentOf(u"opened"_s); }
    [[nodiscard]] QByteArray contentOf(const QString& name) const
    {
        QFile file(m_session->homePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    NullWorkspace m_workspace;
};

void XdgWorkspaceTest::initTestCase()
{
    SessionTest::initTestCase();
    enter(*m_session);
    qunsetenv("XDG_CONFIG_HOME");

    // First in the path; notes what it is given.
    const QString programs = m_session->homePath(u"bin"_s);
    QDir().mkpath(programs);
    QFile opener(programs + u"/xdg-open"_s);
    QVERIFY(opener.open(QIODevice::WriteOnly));
    opener.write("#!/bin/sh\nulimit -c > \"$HOME/cores\"; printf '%s\\n' \"$@\" >> \"$HOME/opened\"\n");
    opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("PATH", programs.toLocal8Bit() + ':' + qgetenv("PATH"));
}

/// One after the other, so that none may open what is none of its business.
void XdgWorkspaceTest::opensLinks()
{
    const std::pair<QString, QByteArray> links[] = {
        {u"--help"_s, {}},
        {u"/etc/passwd"_s, {}},
        {u"https://example.org/$(id)'\";#"_s, "https://example.org/$(id)'%22;#\n"},
        {u"https://a-.b/\u00e9 \"%20~"_s, "https://a-.b/%C3%A9%20%22%20~\n"}, // DNS would not take that host
        {u"www.example.org/a?b#c"_s, "https://www.example.org/a?b#c\n"},
    };
    rlimit limit = {};
    QCOMPARE(::getrlimit(RLIMIT_CORE, &limit), 0);
    limit.rlim_cur = limit.rlim_max;
    QCOMPARE(::setrlimit(RLIMIT_CORE, &limit), 0);
    const QByteArray cores = m_session->run(u"sh"_s, {u"-c"_s, u"ulimit -c"_s}).output;
    ClipboardCore::CoreDumps::forbid();
    QByteArray expected;
    for (const auto& [link, line] : links) {
        m_workspace.openURL(link);
        expected += line;
        QVERIFY2(VirtualSession::waitUntil([&] { return opened() == expected; }), qPrintable(link.left(100)));
    }
    QCOMPARE(contentOf(u"cores"_s), cores); // ours are nobody else's
}

void XdgWorkspaceTest::asksTheFileManagerOrOpensTheFolder()
{
    FileManager manager;
    m_workspace.revealFile(u"/tmp/50% #1?\u00e9.txt"_s);
    m_workspace.revealFile(u"file:///caf%E9.txt"_s); // as an entry holds what is not UTF-8
    QVERIFY(VirtualSession::waitUntil([&] { return manager.shown.size() == 2; }));
    QCOMPARE(manager.shown, QStringList({u"file:///tmp/50%25%20%231%3F%C3%A9.txt"_s, u"file:///caf%E9.txt"_s}));
    // After its answers have come, the next thing that is opened is the first.
    QVERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(fileManagerName));
    QCoreApplication::processEvents();
    m_workspace.openURL(u"https://example.org/"_s);
    QVERIFY(VirtualSession::waitUntil([&] { return !opened().isEmpty(); }));
    QCOMPARE(opened(), "https://example.org/\n");

    manager.failure = u"No display"_s;
    m_workspace.revealFile(u"/tmp/a b/c.txt"_s);
    QVERIFY(VirtualSession::waitUntil([&] { return opened() == "https://example.org/\nfile:///tmp/a%20b/\n"; }));
}

void XdgWorkspaceTest::findsTheDesktop()
{
    QCOMPARE(m_workspace.desktopFolder(), std::nullopt);

    const QString folder = m_session->homePath(u"Schreibtisch"_s);
    QDir().mkpath(m_session->homePath(u".config"_s));
    QFile userFolders(m_session->homePath(u".config/user-dirs.dirs"_s));
    QVERIFY(userFolders.open(QIODevice::WriteOnly));
    userFolders.write("XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\nXDG_PICTURES_DIR=\"$HOME/\"\n"); // no Pictures
    userFolders.close();
    QCOMPARE(m_workspace.desktopFolder(), std::nullopt);
    QDir().mkpath(folder);
    QCOMPARE(m_workspace.desktopFolder(), folder);
    QCOMPARE(m_workspace.picturesFolder(), m_session->homePath({}));
}

QTEST_GUILESS_MAIN(XdgWorkspaceTest)
#include "XdgWorkspaceTest.moc"
