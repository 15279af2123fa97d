#include "Support/PrivateFolder.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <sys/stat.h>

namespace ClipboardCore {

void createPrivateFolder(const QString& path)
{
    // Private from its first moment: rights that are changed later leave a gap.
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), S_IRWXU) == 0 || errno != ENOENT)
        return;
    const QString parent = QFileInfo(path).path();
    if (parent == path)
        return;
    createPrivateFolder(parent);
    ::mkdir(name.constData(), S_IRWXU);
}

void makePrivate(const QString& folder)
{
    const QByteArray name = QFile::encodeName(folder);
    struct stat status = {};
    if (::stat(name.constData(), &status) == 0 && S_ISDIR(status.st_mode))
        ::chmod(name.constData(), status.st_mode & S_IRWXU);
}

void makeContentPrivate(const QString& folder)
{
    constexpr auto all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    for (QDirIterator entry(folder, all, QDirIterator::Subdirectories); entry.hasNext();) {
        const QByteArray name = QFile::encodeName(entry.next());
        struct stat status = {};
        const bool isOurs =
            ::lstat(name.constData(), &status) == 0 && (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode));
        if (isOurs && (status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
            ::chmod(name.constData(), status.st_mode & S_IRWXU);
    }
}

} // namespace ClipboardCore
