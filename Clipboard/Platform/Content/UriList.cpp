#include "UriList.h"

#include "History/CopiedFile.h"

#include <optional>

namespace Clipboard::UriList {

namespace {

bool equalsIgnoringCase(QByteArrayView left, QByteArrayView right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

bool isThisMachine(QByteArrayView host, const QByteArray& hostName)
{
    return host.isEmpty() || equalsIgnoringCase(host, "localhost") ||
           (!hostName.isEmpty() && equalsIgnoringCase(host, hostName));
}

std::optional<QUrl> localFile(QByteArrayView uri, const QByteArray& hostName)
{
    constexpr QByteArrayView scheme = "file:";
    constexpr qsizetype longestUri = 3 * longestPath; // with each of its bytes escaped
    if (uri.size() > longestUri)
        return {};
    if (uri.size() <= scheme.size() || !equalsIgnoringCase(uri.first(scheme.size()), scheme))
        return {};
    QByteArrayView path = uri.sliced(scheme.size());
    if (path.startsWith("//")) {
        const qsizetype slash = path.indexOf('/', 2);
        if (slash < 0 || !isThisMachine(path.sliced(2, slash - 2), hostName))
            return {};
        path = path.sliced(slash);
    }
    if (!path.startsWith('/'))
        return {};
    const QByteArray unescaped = QByteArray::fromPercentEncoding(path.toByteArray());
    if (unescaped.contains('\0') || unescaped.size() >= longestPath)
        return {};
    // Two slashes in front would name a host to QUrl.
    QByteArrayView absolute = unescaped;
    while (absolute.startsWith("//"))
        absolute = absolute.sliced(1);
    return ClipboardCore::CopiedFile::urlOfPath(absolute);
}

QByteArray joined(const QList<QUrl>& files, QByteArrayView separator)
{
    QByteArray text;
    for (const QUrl& file : files) {
        if (!text.isEmpty())
            text += separator;
        text += file.toEncoded(QUrl::FullyEncoded);
    }
    return text;
}

} // namespace

QList<QUrl> localFiles(QByteArrayView list, const QByteArray& hostName)
{
    QList<QUrl> files;
    while (!list.isEmpty() && files.size() < maxFiles) {
        qsizetype end = list.indexOf('\n');
        if (end < 0)
            end = list.size();
        // A carriage return, and the zero byte with which some programs end their text.
        QByteArrayView line = list.first(end).trimmed();
        while (line.endsWith('\0'))
            line.chop(1);
        if (!line.startsWith('#')) {
            if (auto file = localFile(line, hostName))
                files.append(*std::move(file));
        }
        list = list.sliced(qMin(end + 1, list.size()));
    }
    return files;
}

QByteArray uriList(const QList<QUrl>& files)
{
    return joined(files, "\r\n") + "\r\n";
}

QByteArray copiedFiles(const QList<QUrl>& files)
{
    return "copy\n" + joined(files, "\n");
}

} // namespace Clipboard::UriList
