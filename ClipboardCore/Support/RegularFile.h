#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cerrno>
#include <functional>
#include <optional>

/// Files by their system calls, where what stands under a name may be anything: opening never waits, and what is not a
/// regular file is refused.
namespace ClipboardCore::RegularFile {

/// Repeats a system call that a signal interrupted.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Opens `path`, for the user alone where it is made; `flags` as for open(2). -1 with errno when that fails.
[[nodiscard]] int open(const QByteArray& path, int flags);

/// The whole content of an open file. Nothing when it cannot be read or is larger than `largest`. The buffer has room
/// for `padding` more bytes. `sink` sees each piece as soon as it is there.
[[nodiscard]] std::optional<QByteArray> read(int file, qsizetype largest, qsizetype padding,
                                             const std::function<void(QByteArrayView)>& sink);

/// Where the file behind `path` is or, when there is none, would be made: symbolic links are followed, also to the end
/// of one that leads nowhere.
[[nodiscard]] QString target(const QString& path);

/// False when the path stands for another file than the one that is open, or for none.
[[nodiscard]] bool isNamed(int file, const QByteArray& path);

/// Which file stands under a name, and as of when: not equal once another one stands there or somebody wrote to it.
/// That of no file is the default.
struct Trace
{
    quint64 device = 0;
    quint64 node = 0;
    qint64 bytes = 0;
    qint64 changed = 0; // ns since 1970
    bool operator==(const Trace&) const = default;
};
[[nodiscard]] Trace traceOf(const QString& path);

/// Flushes the entries of the folder in which `path` is. Some file systems cannot, which takes nothing from the file.
void syncFolder(const QString& path);

} // namespace ClipboardCore::RegularFile
