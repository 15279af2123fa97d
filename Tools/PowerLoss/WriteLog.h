#pragma once

#include <QByteArray>
#include <QMap>

#include <random>
#include <vector>

/// What this process does to the files of one folder, in order, heard by taking the place of the C library's functions.
/// From it follows what a disk may hold after the power went at any moment.
namespace WriteLog {

struct Event
{
    enum class Kind { create, write, truncate, sync, rename, unlink };
    Kind kind;
    int file = 0;       // the number of the file that it is about
    QByteArray name;    // of create, unlink, and the old one of rename
    QByteArray newName; // of rename
    qint64 offset = 0;  // of write, and the new size of truncate
    QByteArray bytes;   // of write
};

using Files = QMap<QByteArray, QByteArray>; // contents by name

/// Listens from now on; the folder is empty.
void listen(const QByteArray& folder);
/// How much has happened.
[[nodiscard]] std::size_t count();

/// After a process that was killed: what was written is there.
[[nodiscard]] Files afterKill(std::size_t events);
/// After the power went. What was flushed is there; of what was written since, parts may be, in any order; of names
/// that were made, changed or removed since the last flush of any file, those up to some moment, as file systems with a
/// log keep their order.
[[nodiscard]] Files afterPowerLoss(std::size_t events, std::mt19937& random);

} // namespace WriteLog
