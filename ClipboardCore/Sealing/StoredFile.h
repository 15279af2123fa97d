#pragma once

#include "Sealing/ContentSeal.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <memory>
#include <optional>

/// The files beside the history, pictures and their small copies, each sealed or not, whatever is wanted now: who reads
/// one need not know. One sealing holds for the process, since a file may be read wherever its path is known. Its
/// content is bound to the file's name. All threads.
namespace ClipboardCore::StoredFile {

/// How they are written from now on, and what opens those that are sealed.
void setSealing(const Sealing& sealing);
[[nodiscard]] Sealing sealing();

/// Looks at the first bytes. False for a file that cannot be read.
[[nodiscard]] bool isSealed(const QString& path);

/// Opened for reading; null when it cannot be, or is sealed and no key is known. A sealed one is decrypted as far as it
/// is read, from front to back alone.
[[nodiscard]] std::unique_ptr<QIODevice> open(const QString& path);
/// The whole; nothing also for one that is damaged.
[[nodiscard]] std::optional<QByteArray> readAll(const QString& path);
/// What the bytes of such a file hold. Nothing when they are sealed and damaged, or no key is known.
[[nodiscard]] std::optional<QByteArray> contentOf(const QByteArray& bytes, const QString& path);
/// The bytes of a file with that content, as `seal` makes them; the content itself for null.
[[nodiscard]] QByteArray bytesOf(const QByteArray& content, const QString& path, const ContentSeal* seal);

} // namespace ClipboardCore::StoredFile
