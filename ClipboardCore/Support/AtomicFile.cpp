#include "Support/AtomicFile.h"

#include "Support/RegularFile.h"

#include <QFile>

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

/// Locks the file, or gives up after a while: a process that is stopped while it writes must not stop another. A file
/// system without locks has no say in whether something is saved.
bool lock(int file)
{
    constexpr auto longestWait = 2s;
    constexpr auto pause = 10ms;
    for (auto waited = 0ms; flock(file, LOCK_EX | LOCK_NB) < 0; waited += pause) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return true;
        if (waited >= longestWait)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
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
        m_file = RegularFile::open(m_temporary, O_WRONLY | O_CREAT | O_NOFOLLOW);
        if (m_file < 0 && (errno == ELOOP || errno == ENXIO) && unlink(m_temporary.constData()) == 0)
            continue; // a link stood in its place, or a pipe
        if (m_file < 0)
            return fail("open"_L1);
        if (!lock(m_file)) {
            close(std::exchange(m_file, -1)); // not ours to remove
            return fail("lock"_L1);
        }
    } while (m_file < 0 || !RegularFile::isNamed(m_file, m_temporary));

    if (ftruncate(m_file, 0) < 0)
        return fail("truncate"_L1);
    if (fchmod(m_file, S_IRUSR | S_IWUSR) < 0)
        return fail("protect"_L1);
}

void AtomicFile::append(QByteArrayView bytes)
{
    while (!m_failure && !bytes.isEmpty()) {
        const ssize_t written = RegularFile::uninterrupted(
            [this, bytes] { return write(m_file, bytes.data(), static_cast<size_t>(bytes.size())); });
        if (written < 0)
            return fail("write"_L1);
        bytes = bytes.sliced(written);
    }
}

std::optional<QString> AtomicFile::commit()
{
    if (!m_failure && RegularFile::uninterrupted([this] { return fsync(m_file); }) < 0)
        fail("flush"_L1);
    if (!m_failure && rename(m_temporary.constData(), m_target.constData()) < 0)
        fail("rename"_L1);
    if (m_failure)
        return m_failure;
    RegularFile::syncFolder(m_path);
    close(std::exchange(m_file, -1));
    return std::nullopt;
}

void AtomicFile::fail(QLatin1String operation)
{
    m_failure = "%1 (%2 %3)"_L1.arg(qt_error_string(errno), operation, QFile::decodeName(m_temporary));
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
