#include "InstanceLock.h"

#include "Support/RegularFile.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Clipboard::Bus {

namespace {

// The name of a display: a host and two numbers, or of a socket. Hosts' names have 253 letters at most.
constexpr size_t maxNoteBytes = 512;

struct flock wholeFile()
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

} // namespace

InstanceLock::InstanceLock(const QString& file, QByteArray display)
    : m_path(QFile::encodeName(file))
    , m_display(std::move(display))
{
    take();
}

void InstanceLock::take()
{
    m_state = State::unsupported;
    m_file = ::open(m_path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    struct flock lock = wholeFile();
    if (m_file < 0)
        return;
    if (::fcntl(m_file, F_SETLK, &lock) != 0) {
        if (errno == EACCES || errno == EAGAIN)
            m_state = State::heldByAnother;
        return;
    }
    m_state = State::held;
    // Only for the sentence that another start prints: a full disk is no reason to stop.
    if (::ftruncate(m_file, 0) == 0) {
        [[maybe_unused]] const ssize_t written =
            ::pwrite(m_file, m_display.constData(), static_cast<size_t>(m_display.size()), 0);
    }
}

InstanceLock::~InstanceLock()
{
    if (m_file >= 0)
        ::close(m_file);
}

void InstanceLock::renew()
{
    if (m_file >= 0 && ClipboardCore::RegularFile::isNamed(m_file, m_path))
        return;
    if (m_file >= 0)
        ::close(m_file);
    take();
}

bool InstanceLock::isHeld(const QString& file)
{
    const int descriptor = ::open(QFile::encodeName(file).constData(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct flock lock = wholeFile();
    const bool isAnswered = ::fcntl(descriptor, F_GETLK, &lock) == 0;
    ::close(descriptor);
    return isAnswered && lock.l_type != F_UNLCK;
}

QByteArray InstanceLock::holdersDisplay() const
{
    std::array<char, maxNoteBytes> note{};
    const ssize_t length = ::pread(m_file, note.data(), note.size(), 0);
    return {note.data(), length < 0 ? 0 : length};
}

} // namespace Clipboard::Bus
