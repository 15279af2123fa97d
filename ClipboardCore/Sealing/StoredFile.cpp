#include "Sealing/StoredFile.h"

#include "Support/RegularFile.h"

#include <QFile>

#include <mutex>
#include <utility>

#include <fcntl.h>

namespace ClipboardCore {

namespace {

struct Shared
{
    std::mutex mutex;
    Sealing sealing; // guarded by `mutex`
};

Shared& shared()
{
    static Shared one;
    return one;
}

/// Null for what is no regular file: a pipe in its place would hold the reader up, and a device never end.
std::unique_ptr<QFile> fileAt(const QString& path)
{
    const int descriptor = RegularFile::open(QFile::encodeName(path), O_RDONLY);
    auto file = std::make_unique<QFile>(path);
    if (descriptor < 0 || !file->open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle))
        return nullptr;
    return file;
}

/// A file that is moved with its folder stays the same one.
QByteArray contextOf(const QString& path)
{
    return path.mid(path.lastIndexOf(u'/') + 1).toUtf8();
}

} // namespace

void StoredFile::setSealing(const Sealing& sealing)
{
    const std::lock_guard lock(shared().mutex);
    shared().sealing = sealing;
}

Sealing StoredFile::sealing()
{
    const std::lock_guard lock(shared().mutex);
    return shared().sealing;
}

bool StoredFile::isSealed(const QString& path)
{
    const auto file = fileAt(path);
    return file && ClipboardCore::isSealed(file->read(sealedBeginning.size()));
}

std::unique_ptr<QIODevice> StoredFile::open(const QString& path)
{
    auto file = fileAt(path);
    if (!file)
        return nullptr;
    if (!ClipboardCore::isSealed(file->peek(sealedBeginning.size())))
        return file;
    const auto seal = sealing().seal;
    return seal ? seal->opening(std::move(file), contextOf(path)) : nullptr;
}

std::optional<QByteArray> StoredFile::readAll(const QString& path)
{
    const auto file = fileAt(path);
    if (!file)
        return std::nullopt;
    const QByteArray bytes = file->readAll();
    return file->error() == QFile::NoError ? contentOf(bytes, path) : std::nullopt;
}

std::optional<QByteArray> StoredFile::contentOf(const QByteArray& bytes, const QString& path)
{
    if (!ClipboardCore::isSealed(bytes))
        return bytes;
    const auto seal = sealing().seal;
    if (!seal)
        return std::nullopt;
    return opened(*seal, bytes, contextOf(path));
}

QByteArray StoredFile::bytesOf(const QByteArray& content, const QString& path, const ContentSeal* seal)
{
    return sealed(content, seal, contextOf(path));
}

} // namespace ClipboardCore
