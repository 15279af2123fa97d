#include "Sealing/StoredFile.h"

#include <QBuffer>
#include <QFile>

#include <mutex>
#include <utility>

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
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && ClipboardCore::isSealed(file.read(sealedBeginning.size()));
}

std::unique_ptr<QIODevice> StoredFile::open(const QString& path)
{
    auto file = std::make_unique<QFile>(path);
    if (!file->open(QIODevice::ReadOnly))
        return nullptr;
    if (!ClipboardCore::isSealed(file->peek(sealedBeginning.size())))
        return file;
    const auto seal = sealing().seal;
    return seal ? seal->opening(std::move(file), contextOf(path)) : nullptr;
}

std::optional<QByteArray> StoredFile::readAll(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    return file.error() == QFile::NoError ? contentOf(bytes, path) : std::nullopt;
}

std::optional<QByteArray> StoredFile::contentOf(const QByteArray& bytes, const QString& path)
{
    if (!ClipboardCore::isSealed(bytes))
        return bytes;
    const auto seal = sealing().seal;
    if (!seal)
        return std::nullopt;
    auto sealed = std::make_unique<QBuffer>();
    sealed->setData(bytes);
    sealed->open(QIODevice::ReadOnly);
    return opened(*seal, std::move(sealed), contextOf(path));
}

QByteArray StoredFile::bytesOf(const QByteArray& content, const QString& path, const ContentSeal* seal)
{
    if (seal == nullptr)
        return content;
    QByteArray bytes;
    bytes.reserve(content.size() + content.size() / 1024 + 1024); // a chunk of 64 KiB grows by a few bytes
    const auto stream = seal->sealing(contextOf(path), [&bytes](QByteArrayView piece) { bytes += piece; });
    stream->append(content);
    stream->finish();
    return bytes;
}

} // namespace ClipboardCore
