#pragma once

#include "Support/Utf8Text.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QUrl>

#include <optional>

/// A copied file as the content of its entry.
///
/// To the system a path is bytes, and those of an old disk or a foreign archive need not be UTF-8, while a content is a
/// text. Such a path is recorded as its `file:` URI (RFC 8089), in which each of its bytes is kept; every other one as
/// it is. Both begin differently, so that one is never taken for the other.
namespace ClipboardCore::CopiedFile {

/// What an entry holds for a local file.
[[nodiscard]] Utf8Text content(const QUrl& file);

/// The path in the bytes of the file system.
[[nodiscard]] QByteArray path(QByteArrayView content);

[[nodiscard]] QUrl url(QByteArrayView content);
/// The same for the bytes of a path.
[[nodiscard]] QUrl urlOfPath(QByteArrayView path);

/// The path and its last component to look at: U+FFFD stands for what is not UTF-8.
[[nodiscard]] QString shownPath(QByteArrayView content);
[[nodiscard]] QString shownName(QByteArrayView content);

struct Status
{
    bool isFolder = false;
    bool isRegular = false;
    /// In bytes.
    qint64 size = 0;
};

/// Asks the file system; nothing when there is no such file, or it cannot be reached.
[[nodiscard]] std::optional<Status> status(QByteArrayView content);

} // namespace ClipboardCore::CopiedFile
