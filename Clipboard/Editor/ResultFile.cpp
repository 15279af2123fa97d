#include "ResultFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

bool writeNew(const QByteArray& name, const QByteArray& bytes, const QString& permissionsFrom)
{
    // The process's mask decides, as for every file that a program makes for its user.
    const int descriptor = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, DEFFILEMODE);
    if (descriptor < 0)
        return false;
    QFile file;
    file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle);
    if (QFile::exists(permissionsFrom))
        file.setPermissions(QFile::permissions(permissionsFrom));
    return file.write(bytes) == bytes.size() && ::fsync(descriptor) == 0;
}

bool moveToFreeName(const QByteArray& from, const QByteArray& to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    // Some file systems cannot promise it of a renaming; a second link never replaces anything.
    return errno == EINVAL && ::link(from.constData(), to.constData()) == 0 && ::unlink(from.constData()) == 0;
}

} // namespace

QString ResultFile::suggestedName(const QDateTime& at)
{
    return QCoreApplication::translate("ResultFile", "Annotated %1").arg(at.toString(u"yyyy-MM-dd HH.mm"_s)) +
           u".png"_s;
}

bool ResultFile::write(const QByteArray& png, const QString& path, bool mayReplace)
{
    const QFileInfo link(path);
    const QString target = link.exists() ? link.canonicalFilePath() : link.absoluteFilePath();
    const QByteArray temporary = QFile::encodeName(QFileInfo(target).path() + u"/.tessaly-"_s +
                                                   QUuid::createUuid().toString(QUuid::WithoutBraces));
    const QByteArray final = QFile::encodeName(target);
    const bool isWritten =
        writeNew(temporary, png, mayReplace ? target : QString()) &&
        (mayReplace ? ::rename(temporary.constData(), final.constData()) == 0 : moveToFreeName(temporary, final));
    if (!isWritten)
        ::unlink(temporary.constData());
    return isWritten;
}

} // namespace Clipboard
