#include "Support/RegularFile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ClipboardCore::RegularFile {

int open(const QByteArray& path, int flags)
{
    // Without O_NONBLOCK, opening a pipe waits for its other end. On a regular file it means nothing.
    const int file = uninterrupted(
        [&] { return ::open(path.constData(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, S_IRUSR | S_IWUSR); });
    if (file < 0)
        return -1;
    struct stat status = {};
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode))
        return file;
    ::close(file);
    errno = S_ISDIR(status.st_mode) ? EISDIR : ENXIO;
    return -1;
}

std::optional<QByteArray> read(int file, qsizetype largest, qsizetype padding,
                               const std::function<void(QByteArrayView)>& sink)
{
    // What has just been read is still in the processor's cache when it is looked at.
    constexpr qsizetype pieceSize = qsizetype{256} * 1024;
    struct stat status = {};
    if (fstat(file, &status) < 0 || status.st_size > largest)
        return std::nullopt;
    QByteArray content;
    content.reserve(status.st_size + padding);
    content.resize(status.st_size);
    for (qsizetype done = 0; done < content.size();) {
        const auto piece = static_cast<size_t>(std::min(pieceSize, content.size() - done));
        const ssize_t count = uninterrupted([&] { return ::read(file, content.data() + done, piece); });
        if (count <= 0)
            return std::nullopt;
        sink(QByteArrayView(content).sliced(done, count));
        done += count;
    }
    return content;
}

QString target(const QString& path)
{
    constexpr int longestChain = 40; // as in path_resolution(7)
    QString current = path;
    for (int i = 0; i < longestChain; ++i) {
        const QFileInfo named(current);
        if (!named.isSymLink())
            return current;
        current = named.symLinkTarget();
    }
    return path;
}

bool isNamed(int file, const QByteArray& path)
{
    struct stat open = {};
    struct stat named = {};
    return fstat(file, &open) == 0 && lstat(path.constData(), &named) == 0 && open.st_ino == named.st_ino &&
           open.st_dev == named.st_dev;
}

Trace traceOf(const QString& path)
{
    constexpr qint64 second = 1'000'000'000;
    struct stat status = {};
    if (lstat(QFile::encodeName(path).constData(), &status) < 0)
        return {};
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec * second + status.st_mtim.tv_nsec};
}

void syncFolder(const QString& path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    uninterrupted([descriptor] { return fsync(descriptor); });
    ::close(descriptor);
}

} // namespace ClipboardCore::RegularFile
