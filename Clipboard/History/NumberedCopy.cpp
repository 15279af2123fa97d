#include "NumberedCopy.h"

#include "Sealing/StoredFile.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 chunkSize = qint64{256} * 1024;

/// "name.ext" with a number: "name 2.ext". A full stop at either end makes no extension.
QString numberedName(const QString& name, int number)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    const qsizetype baseLength = dot > 0 && dot < name.size() - 1 ? dot : name.size();
    return name.first(baseLength) + u' ' + QString::number(number) + name.sliced(baseLength);
}

/// Opens a new file under the first free name. Its path; nothing when the folder takes none.
std::optional<QString> createNumbered(QFile& file, const QString& folder, const QString& name, mode_t mode)
{
    QString candidate = folder + u'/' + name;
    for (int number = 2;; ++number) {
        const int descriptor =
            ::open(QFile::encodeName(candidate).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor >= 0) {
            // Cannot fail for a descriptor that is open for writing.
            file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle);
            return candidate;
        }
        if (errno != EEXIST)
            return std::nullopt;
        candidate = folder + u'/' + numberedName(name, number);
    }
}

bool copyContent(QIODevice& source, QFile& target)
{
    QByteArray chunk(chunkSize, Qt::Uninitialized);
    for (;;) {
        const qint64 length = source.read(chunk.data(), chunk.size());
        if (length <= 0)
            return length == 0 && ::fsync(target.handle()) == 0;
        if (target.write(chunk.constData(), length) != length)
            return false;
    }
}

} // namespace

std::optional<QString> copyNumbered(const QString& sourcePath, const QString& folder, const QString& name)
{
    // Opening a pipe would wait for somebody to write into it.
    const QFileInfo info(sourcePath);
    struct ::stat status = {};
    if (!info.isFile() || ::stat(QFile::encodeName(sourcePath).constData(), &status) != 0)
        return std::nullopt;
    const auto source = ClipboardCore::StoredFile::open(sourcePath);
    if (!source)
        return std::nullopt;

    QFile target;
    auto path = createNumbered(target, folder, name.isEmpty() ? info.fileName() : name, status.st_mode & ACCESSPERMS);
    if (!path)
        return std::nullopt;
    if (!copyContent(*source, target)) {
        QFile::remove(*path);
        return std::nullopt;
    }
    return path;
}

} // namespace Clipboard
