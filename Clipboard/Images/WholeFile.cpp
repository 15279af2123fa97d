#include "WholeFile.h"

#include "Sealing/StoredFile.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>
#include <unistd.h>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

using ClipboardCore::Sealing;
namespace StoredFile = ClipboardCore::StoredFile;

bool writeAs(const Sealing& sealing, const QString& target, const QByteArray& content, bool isNew)
{
    const QByteArray bytes = StoredFile::bytesOf(content, target, sealing.writing().get());
    QTemporaryFile file(QFileInfo(target).path() + u"/incoming-XXXXXX.png"_s);
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush() || ::fsync(file.handle()) != 0 ||
        (!isNew && !QFile::exists(target)) ||
        ::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(target).constData()) != 0)
        return false;
    file.setAutoRemove(false);
    return true;
}

} // namespace

bool writeWhole(const QString& target, const QByteArray& content)
{
    for (;;) {
        const Sealing sealing = StoredFile::sealing();
        if (!writeAs(sealing, target, content, true))
            return false;
        // Who brings all files into another form may have looked here before this one was there.
        if (StoredFile::sealing().isWanted == sealing.isWanted)
            return true;
    }
}

void rewriteAsWanted(const QString& path)
{
    const Sealing sealing = StoredFile::sealing();
    if (StoredFile::isSealed(path) == sealing.isWanted)
        return;
    if (const auto content = StoredFile::readAll(path))
        writeAs(sealing, path, *content, false);
}

} // namespace Clipboard
