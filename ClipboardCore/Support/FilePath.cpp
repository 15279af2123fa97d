#include "Support/FilePath.h"

namespace ClipboardCore::FilePath {

QByteArrayView lastComponent(QByteArrayView path)
{
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path.size() == 1 ? path : path.sliced(path.lastIndexOf('/') + 1);
}

} // namespace ClipboardCore::FilePath
