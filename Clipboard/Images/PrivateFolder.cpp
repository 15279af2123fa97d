#include "PrivateFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace Clipboard {

void createPrivateFolder(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    // Private from its first moment: rights that are changed later leave a gap.
    ::mkdir(QFile::encodeName(path).constData(), S_IRWXU);
}

} // namespace Clipboard
