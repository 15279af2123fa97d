#include "BusContent.h"

#include "BusNames.h"

#include <QDBusUnixFileDescriptor>
#include <QFile>

#include <sys/mman.h>
#include <sys/stat.h>

namespace Clipboard::Bus {

namespace {

bool isOfFileOrMemory(int descriptor)
{
    struct stat about = {};
    return ::fstat(descriptor, &about) == 0 && S_ISREG(about.st_mode);
}

std::optional<QByteArray> readAll(int descriptor, qint64 limit)
{
    QFile file;
    if (!isOfFileOrMemory(descriptor) || !file.open(descriptor, QFile::ReadOnly) || !file.seek(0) ||
        file.size() > limit)
        return std::nullopt;
    QByteArray bytes = file.read(file.size()); // which takes as much memory as it is asked for
    if (file.error() != QFile::NoError)
        return std::nullopt;
    return bytes;
}

} // namespace

std::optional<QVariant> toWire(const QByteArray& content)
{
    if (content.size() <= largestInlineContent)
        return content;
    const int memory = ::memfd_create("tessaly-content", MFD_CLOEXEC);
    QFile file;
    if (memory < 0 || !file.open(memory, QFile::ReadWrite, QFile::AutoCloseHandle))
        return std::nullopt;
    if (file.write(content) != content.size() || !file.flush() || !file.seek(0))
        return std::nullopt;
    return QVariant::fromValue(QDBusUnixFileDescriptor(memory));
}

std::optional<QByteArray> fromWire(const QVariant& content, qint64 limit)
{
    if (content.metaType() == QMetaType::fromType<QByteArray>())
        return content.toByteArray();
    if (content.metaType() == QMetaType::fromType<QDBusUnixFileDescriptor>())
        return readAll(content.value<QDBusUnixFileDescriptor>().fileDescriptor(), limit);
    return std::nullopt;
}

} // namespace Clipboard::Bus
