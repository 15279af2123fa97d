#include "WholeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>
#include <unistd.h>

namespace Clipboard {

using namespace Qt::StringLiterals;

bool writeWhole(const QString& target, const QByteArray& bytes)
{
    QTemporaryFile file(QFileInfo(target).path() + u"/incoming-XXXXXX.png"_s);
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush() || ::fsync(file.handle()) != 0 ||
        ::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(target).constData()) != 0)
        return false;
    file.setAutoRemove(false);
    return true;
}

} // namespace Clipboard
