#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QUrl>

/// The two forms in which programs hand over lists of files: `text/uri-list` (RFC 2483, section 5) and the
/// `x-special/gnome-copied-files` of file managers, which puts the verb "copy" or "cut" on a line before the list.
namespace Clipboard::UriList {

/// Everything beyond is left out: more files than a person selects, few enough to hold.
inline constexpr qsizetype maxFiles = 10'000;

/// What is longer, in the bytes of the file system, no program can open by its path (PATH_MAX, the zero at the end
/// included).
inline constexpr qsizetype longestPath = 4096;

/// The local files of either form, in order, as file URLs. A file of this machine may be written `file:///path`,
/// `file:/path`, `file://localhost/path` or with `hostName` as the host (RFC 8089). Left out are comments, the verb,
/// other schemes, files of other hosts and paths that are too long. A name that is not UTF-8 keeps its bytes, escaped.
[[nodiscard]] QList<QUrl> localFiles(QByteArrayView list, const QByteArray& hostName);

[[nodiscard]] QByteArray uriList(const QList<QUrl>& files);
[[nodiscard]] QByteArray copiedFiles(const QList<QUrl>& files);

} // namespace Clipboard::UriList
