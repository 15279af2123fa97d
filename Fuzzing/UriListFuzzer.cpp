#include "Fuzzer.h"
#include "History/CopiedFile.h"
#include "UriList.h"

using namespace Clipboard;
namespace CopiedFile = ClipboardCore::CopiedFile;

void Fuzzer::run(QByteArrayView input)
{
    const QByteArray host = "thishost";
    const QList<QUrl> files = UriList::localFiles(input, host);
    require(files.size() <= UriList::maxFiles, "there are no more files than the bound");
    for (const QUrl& file : files) {
        const QByteArray content = CopiedFile::content(file).utf8();
        const QByteArray path = CopiedFile::path(content);
        require(file.isLocalFile() && file.host().isEmpty(), "it is a file of this machine");
        require(path.startsWith('/') && !path.contains('\0'), "its path is one for the system");
        require(path.size() < UriList::longestPath, "which would take it");
        require(CopiedFile::url(content) == file, "its entry stands for the same file");
    }
    require(UriList::localFiles(UriList::uriList(files), host) == files,
            "written as a list of URIs, they are the same");
    require(UriList::localFiles(UriList::copiedFiles(files), host) == files, "and as a file manager's list");
}
