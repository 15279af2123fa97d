#include "InstanceLock.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Clipboard {

namespace {

struct flock wholeFile()
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

} // namespace

InstanceLock::InstanceLock(const QString& file)
    : m_file(::open(QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR))
{
    struct flock lock = wholeFile();
    if (m_file < 0 || ::fcntl(m_file, F_SETLK, &lock) == 0)
        return;
    lock = wholeFile();
    if (::fcntl(m_file, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK)
        m_holder = lock.l_pid;
}

InstanceLock::~InstanceLock()
{
    if (m_file >= 0)
        ::close(m_file);
}

} // namespace Clipboard
