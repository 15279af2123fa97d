#include "ImageBlobs.h"

#include "PictureTranscoder.h"
#include "Sealing/StoredFile.h"
#include "Support/PrivateFolder.h"
#include "ThumbFiles.h"
#include "WholeFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QThreadPool>

#include <gcrypt.h>

#include <algorithm>

namespace Clipboard {

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
using namespace Qt::StringLiterals;

namespace {

// A picture is written before its entry is stored: what is younger than this may be waiting for its entry.
constexpr int orphanAgeSeconds = 60;

// Named by what is in them: not those that are being written.
const QStringList storedPictures{u"????????????????????????????????????????????????????????????????.png"_s};

/// The toolkit's own takes ten times as long, for a large picture longer than all the rest that is done with it.
QByteArray sha256(const QByteArray& bytes)
{
    static const bool isReady = gcry_check_version(nullptr) != nullptr; // its way of being initialised
    Q_UNUSED(isReady)
    QByteArray digest(gcry_md_get_algo_dlen(GCRY_MD_SHA256), Qt::Uninitialized);
    gcry_md_hash_buffer(GCRY_MD_SHA256, digest.data(), bytes.constData(), static_cast<size_t>(bytes.size()));
    return digest;
}

/// A sweep that is under way must take the file for a new one.
void markAsNew(const QString& path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
        file.setFileTime(QDateTime::currentDateTime(), QFileDevice::FileModificationTime);
}

std::optional<QString> store(const std::optional<QByteArray>& png, const QString& dir)
{
    if (!png)
        return std::nullopt;
    ClipboardCore::createPrivateFolder(dir);
    const QString target = QDir(dir).absoluteFilePath(ImageBlobs::filename(*png));
    if (QFile::exists(target)) {
        markAsNew(target);
        return target;
    }
    if (!writeWhole(target, *png))
        return std::nullopt;
    return target;
}

QString fileNameOf(const ClipItem& item)
{
    const QString path = item.content.toString();
    return path.mid(path.lastIndexOf(u'/') + 1);
}

void removeOrphans(const QString& dir, const QSet<QString>& referenced)
{
    const QDateTime cutoff = QDateTime::currentDateTimeUtc().addSecs(-orphanAgeSeconds);
    const QFileInfoList files = QDir(dir).entryInfoList({u"*.png"_s}, QDir::Files | QDir::Hidden | QDir::CaseSensitive);
    for (const QFileInfo& file : files) {
        if (!referenced.contains(file.fileName()) && file.lastModified() < cutoff)
            QFile::remove(file.filePath());
    }
}

/// Small copies are made again from their pictures when somebody looks.
void dropOtherForm(const QString& dir, const std::stop_token& stop)
{
    const bool isSealingWanted = ClipboardCore::StoredFile::sealing().isWanted;
    for (const QString& name : QDir(dir).entryList(storedPictures, QDir::Files)) {
        if (stop.stop_requested())
            return;
        const QString path = dir + u'/' + name;
        if (ClipboardCore::StoredFile::isSealed(path) != isSealingWanted)
            QFile::remove(path);
    }
}

void rewriteAll(const QString& dir, const std::stop_token& stop)
{
    for (const QString& name : QDir(dir).entryList(storedPictures, QDir::Files)) {
        if (stop.stop_requested())
            return;
        rewriteAsWanted(dir + u'/' + name);
    }
}

} // namespace

std::optional<QString> ImageBlobs::write(const QByteArray& picture, const QString& dir, const std::stop_token& hurry)
{
    return store(PictureTranscoder::toPNG(picture, hurry), dir);
}

std::optional<QString> ImageBlobs::write(const QImage& picture, const QString& dir)
{
    auto path = store(PictureTranscoder::toPNG(picture), dir);
    if (path)
        ThumbFiles::make(*path, picture);
    return path;
}

QString ImageBlobs::filename(const QByteArray& png)
{
    return QString::fromLatin1(sha256(png).toHex()) + u".png"_s;
}

void ImageBlobs::release(const QList<ClipItem>& items)
{
    for (const ClipItem& item : items) {
        if (item.type != ClipType::image)
            continue;
        const QString picture = item.content.toString();
        if (const QFileInfo file(picture);
            file.isFile() || file.isSymLink()) // a history may name a device of the system
            QFile::remove(picture);
        ThumbFiles::remove(picture);
    }
}

void ImageBlobs::sweepOrphans(const QString& dir, const QList<ClipItem>& items, QThreadPool& pool)
{
    QSet<QString> referenced;
    for (const ClipItem& item : items) {
        if (item.type == ClipType::image)
            referenced.insert(fileNameOf(item));
    }
    pool.start([dir, referenced] {
        removeOrphans(dir, referenced);
        removeOrphans(ThumbFiles::folderIn(dir), referenced);
    });
}

bool ImageBlobs::hasSealed(const QString& dir)
{
    const QStringList names = QDir(dir).entryList(storedPictures, QDir::Files);
    return std::ranges::any_of(
        names, [&dir](const QString& name) { return ClipboardCore::StoredFile::isSealed(dir + u'/' + name); });
}

void ImageBlobs::bringIntoForm(const QString& dir, QThreadPool& pool, const std::stop_token& stop)
{
    pool.start([dir, stop] {
        rewriteAll(dir, stop);
        dropOtherForm(ThumbFiles::folderIn(dir), stop);
    });
}

} // namespace Clipboard
