#include "Support/AtomicFile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace ClipboardCore {

namespace {

/// Repeats a system call that a signal interrupted.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Locks the file, or gives up after a while: a process that is stopped while it writes must not stop another.
bool lock(int file)
{
    constexpr auto longestWait = 2s;
    constexpr auto pause = 10ms;
    for (auto waited = 0ms; flock(file, LOCK_EX | LOCK_NB) < 0; waited += pause) {
        if ((errno != EWOULDBLOCK && errno != EINTR) || waited >= longestWait)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

/// True when `path` still names the file that is open as `file`.
bool isSameFile(int file, const QByteArray& path)
{
    struct stat open = {};
    struct stat named = {};
    return fstat(file, &open) == 0 && lstat(path.constData(), &named) == 0 && open.st_ino == named.st_ino &&
           open.st_dev == named.st_dev;
}

/// Flushes a folder's entries. Some file systems cannot, which takes nothing from the file itself.
void syncFolder(const QString& path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    const int descriptor = open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    uninterrupted([descriptor] { return fsync(descriptor); });
    close(descriptor);
}

} // namespace

AtomicFile::AtomicFile(QString path)
    : m_path(std::move(path))
    , m_target(QFile::encodeName(m_path))
    , m_temporary(m_target + QByteArrayLiteral(".tmp"))
{
    open();
}

AtomicFile::~AtomicFile()
{
    discard();
}

void AtomicFile::open()
{
    // Whoever holds the lock may rename the file or remove it; the name then stands for another one, or for none.
    do {
        if (m_file >= 0)
            close(m_file);
        m_file = uninterrupted([this] {
            return ::open(m_temporary.constData(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
        });
        if (m_file < 0 && errno == ELOOP && unlink(m_temporary.constData()) == 0)
            continue; // a link stood in its place
        if (m_file < 0)
            return fail("open"_L1);
        if (!lock(m_file)) {
            close(std::exchange(m_file, -1)); // not ours to remove
            return fail("lock"_L1);
        }
    } while (m_file < 0 || !isSameFile(m_file, m_temporary));

    if (ftruncate(m_file, 0) < 0)
        return fail("truncate"_L1);
    if (fchmod(m_file, S_IRUSR | S_IWUSR) < 0)
        return fail("protect"_L1);
}

void AtomicFile::append(QByteArrayView bytes)
{
    while (!m_failure && !bytes.isEmpty()) {
        const ssize_t written =
            uninterrupted([this, bytes] { return write(m_file, bytes.data(), static_cast<size_t>(bytes.size())); });
        if (written < 0)
            return fail("write"_L1);
        bytes = bytes.sliced(written);
    }
}

std::optional<QString> AtomicFile::commit()
{
    if (!m_failure && uninterrupted([this] { return fsync(m_file); }) < 0)
        fail("flush"_L1);
    if (!m_failure && rename(m_temporary.constData(), m_target.constData()) < 0)
        fail("rename"_L1);
    if (m_failure)
        return m_failure;
    syncFolder(m_path);
    close(std::exchange(m_file, -1));
    return std::nullopt;
}

void AtomicFile::fail(QLatin1String operation)
{
    m_failure = "Cannot %1 %2: %3"_L1.arg(operation, QFile::decodeName(m_temporary), qt_error_string(errno));
    discard();
}

void AtomicFile::discard()
{
    if (m_file < 0)
        return;
    unlink(m_temporary.constData());
    close(std::exchange(m_file, -1));
}

} // namespace ClipboardCore
