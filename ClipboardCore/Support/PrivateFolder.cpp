#include "Support/PrivateFolder.h"

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

} // namespace ClipboardCore
