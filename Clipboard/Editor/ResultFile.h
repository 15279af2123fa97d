#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

/// A result as a file of the user's own, outside of the history.
namespace Clipboard::ResultFile {

/// Translated: "Annotated 2026-11-21 15.04.png".
[[nodiscard]] QString suggestedName(const QDateTime& at);

/// Writes the whole file or none: under a name of its own first, which becomes `path` once it is on the disk. A file
/// that is replaced keeps its permissions, and a link its place; without `mayReplace` nothing is replaced, not even
/// what another program creates at the same moment. False when it could not be written. Blocking: never on the main
/// thread.
[[nodiscard]] bool write(const QByteArray& png, const QString& path, bool mayReplace);

} // namespace Clipboard::ResultFile
