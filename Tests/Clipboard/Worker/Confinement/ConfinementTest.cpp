#include "Confinement.h"
#include "ReadableFiles.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <linux/netlink.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <thread>
#include <unistd.h>

using namespace Clipboard;

namespace {

/// Fails with a negative number.
using Attempt = std::function<long()>;

Attempt opening(const QByteArray& path, int flags = O_RDONLY)
{
    return [=] { return ::open(path.constData(), flags | O_CLOEXEC, 0600); };
}

Attempt socketOf(int family, int type, int protocol = 0)
{
    return [=] { return ::socket(family, type | SOCK_CLOEXEC, protocol); };
}

/// Whether it succeeds in a process of its own that has only what its task needs.
bool succeeds(const Attempt& attempt, const TaskNeeds& needs)
{
    const pid_t child = ::fork();
    if (child == 0) {
        confineThisProcess(needs, [](const char*) {});
        ::_exit(attempt() < 0 ? 1 : 0);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    if (!WIFEXITED(status))
        qFatal("The attempt did not come to its end: %d", status);
    return WEXITSTATUS(status) == 0;
}

} // namespace

/// What can still be done from inside.
class ConfinementTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { QVERIFY(QFile::exists(QFile::decodeName(m_secret))); }
    void files();
    void processes();
    void sockets();

private:
    enum For { nobody, recognition, title, both };
    void check(const char* what, For whom, const Attempt& attempt) const;

    const QTemporaryDir m_home;
    const QByteArray m_folder = QFile::encodeName(m_home.path());
    const QByteArray m_picture = m_folder + "/picture.png";
    const QByteArray m_secret = m_folder + "/secret";
};

void ConfinementTest::initTestCase()
{
    if (!isConfinable)
        QSKIP("The sanitizers need what is taken away here.");
    for (const QByteArray& path : {m_picture, m_secret})
        QVERIFY(QFile(QFile::decodeName(path)).open(QIODevice::WriteOnly));
}

void ConfinementTest::check(const char* what, For whom, const Attempt& attempt) const
{
    QVERIFY2(succeeds(attempt, needsOfRecognition(m_picture)) == (whom == recognition || whom == both), what);
    QVERIFY2(succeeds(attempt, needsOfTitle()) == (whom == title || whom == both), what);
}

void ConfinementTest::files()
{
    check("read a library's data", both, opening("/usr/lib/os-release"));
    check("create a file", nobody, opening(m_folder + "/new", O_WRONLY | O_CREAT));
    check("create a file, to read", nobody, opening(m_folder + "/new", O_CREAT));
    check("write over the picture", nobody, opening(m_picture, O_RDWR));
    check("empty the picture", nobody, opening(m_picture, O_TRUNC));
    check("remove a file", nobody, [this] { return ::unlink(m_secret.constData()); });
    check("rename a file", nobody, [this] { return ::rename(m_secret.constData(), m_picture.constData()); });
    check("open a file to all", nobody, [this] { return ::chmod(m_secret.constData(), 0644); });
    if (!canConfineFiles())
        QSKIP("This kernel cannot keep files from being read.");
    check("read the picture", recognition, opening(m_picture));
    check("read what is beside it", nobody, opening(m_secret));
    check("list the folder", nobody, opening(m_folder, O_DIRECTORY));
    check("look into a process", nobody, opening("/proc/self/maps"));
    check("find a name server", title, opening("/etc/resolv.conf"));
    check("read a list of users", nobody, opening("/etc/passwd"));
}

void ConfinementTest::processes()
{
    check("start a thread", both, [] {
        long result = -1;
        std::thread([&] { result = 0; }).join();
        return result;
    });
    check("start a process", nobody, [] { return ::fork(); });
    check("become a program", nobody, [] { return ::execl("/bin/true", "true", nullptr); });
    check("signal itself", both, [] { return ::syscall(SYS_tgkill, ::getpid(), ::getpid(), 0); });
    check("signal the parent", nobody, [] { return ::kill(::getppid(), 0); });
    check("signal its threads", nobody, [] { return ::syscall(SYS_tgkill, ::getppid(), ::getppid(), 0); });
    check("have it signalled", nobody, [] { return ::fcntl(STDIN_FILENO, F_SETOWN, ::getppid()); });
    check("be looked into again", nobody, [] { return ::prctl(PR_SET_DUMPABLE, 1); });
}

void ConfinementTest::sockets()
{
    check("speak TCP", title, socketOf(AF_INET, SOCK_STREAM));
    check("speak TCP on IPv6", title, socketOf(AF_INET6, SOCK_STREAM));
    check("ask a name server", title, socketOf(AF_INET, SOCK_DGRAM));
    check("list our addresses", title, socketOf(AF_NETLINK, SOCK_RAW, NETLINK_ROUTE));
    check("hear of devices", nobody, socketOf(AF_NETLINK, SOCK_RAW, NETLINK_KOBJECT_UEVENT));
    check("speak to the session", nobody, socketOf(AF_UNIX, SOCK_STREAM));
    check("send raw packets", nobody, socketOf(AF_INET, SOCK_RAW, IPPROTO_ICMP));
    check("wait for connections", nobody, [] { return ::listen(::socket(AF_INET, SOCK_STREAM, 0), 1); });
}

QTEST_APPLESS_MAIN(ConfinementTest)
#include "ConfinementTest.moc"
