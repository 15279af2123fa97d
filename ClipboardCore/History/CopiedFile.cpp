#include "History/CopiedFile.h"

#include "Support/FilePath.h"

#include <QUtf8StringView>

#include <sys/stat.h>

namespace ClipboardCore::CopiedFile {

namespace {

constexpr QByteArrayView scheme = "file://";

bool isUtf8(QByteArrayView bytes)
{
    return QUtf8StringView(bytes).isValidUtf8();
}

} // namespace

Utf8Text content(const QUrl& file)
{
    const QByteArray path = QByteArray::fromPercentEncoding(file.path(QUrl::FullyEncoded).toLatin1());
    return Utf8Text::fromValidUtf8(isUtf8(path) ? path : urlOfPath(path).toEncoded());
}

QByteArray path(QByteArrayView content)
{
    if (content.startsWith(scheme)) {
        QByteArray path = QByteArray::fromPercentEncoding(content.sliced(scheme.size()).toByteArray());
        if (!isUtf8(path))
            return path;
    }
    return content.toByteArray();
}

QUrl url(QByteArrayView content)
{
    return urlOfPath(path(content));
}

QUrl urlOfPath(QByteArrayView path)
{
    if (isUtf8(path))
        return QUrl::fromLocalFile(QString::fromUtf8(path));
    return QUrl::fromEncoded(scheme.toByteArray() + path.toByteArray().toPercentEncoding("/"), QUrl::StrictMode);
}

QString shownPath(QByteArrayView content)
{
    return QString::fromUtf8(path(content));
}

QString shownName(QByteArrayView content)
{
    const QByteArray bytes = path(content);
    return QString::fromUtf8(FilePath::lastComponent(bytes));
}

std::optional<Status> status(QByteArrayView content)
{
    const QByteArray name = path(content);
    struct stat found
    {
    };
    if (name.contains('\0') || ::stat(name.constData(), &found) != 0)
        return std::nullopt;
    return Status{S_ISDIR(found.st_mode), S_ISREG(found.st_mode), found.st_size};
}

} // namespace ClipboardCore::CopiedFile
