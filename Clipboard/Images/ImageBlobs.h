#pragma once

#include "History/ClipItem.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>

#include <optional>
#include <stop_token>

class QThreadPool;

/// The picture files behind picture entries: one PNG a picture, named by the SHA-256 of its bytes, so that equal
/// pictures share one file.
namespace Clipboard::ImageBlobs {

/// Stores a copied PNG or TIFF picture in `dir` and answers the absolute path of its file; nothing when it cannot be
/// decoded, would pass PictureReading::maxDecodedBytes or cannot be written. What is stored is the pixels and what says
/// how to show them: comments, times and positions that the copy carried are left out. A file that is there already is
/// not written again. Takes its time, less of it once a stop of `hurry` is requested: never on the main thread.
[[nodiscard]] std::optional<QString> write(const QByteArray& picture, const QString& dir,
                                           const std::stop_token& hurry = {});

/// Stores pixels in the same way, and their small copy. Nothing but them and their colour space is written.
[[nodiscard]] std::optional<QString> write(const QImage& picture, const QString& dir);

/// 64 lower-case hexadecimal digits of the SHA-256 of `png`, and ".png".
[[nodiscard]] QString filename(const QByteArray& png);

/// Deletes the files of the picture entries among `items`, and their small copies. Entries of other types are left
/// alone, and so is what is no file: a device or a pipe.
void release(const QList<ClipboardCore::ClipItem>& items);

/// Deletes, on the pool, the PNG files in `dir` that no entry refers to, and the small copies of such. Files younger
/// than a minute stay: their entry may be about to be stored.
void sweepOrphans(const QString& dir, const QList<ClipboardCore::ClipItem>& items, QThreadPool& pool);

/// Whether any picture in `dir` is sealed. Takes its time.
[[nodiscard]] bool hasSealed(const QString& dir);

/// Has pictures and small copies that are not kept as it is wanted now (ClipboardCore::StoredFile) written anew or
/// dropped, on the pool. Ends early once a stop is requested.
void bringIntoForm(const QString& dir, QThreadPool& pool, const std::stop_token& stop);

} // namespace Clipboard::ImageBlobs
