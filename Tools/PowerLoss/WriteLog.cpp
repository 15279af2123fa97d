#include "WriteLog.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <unistd.h>

namespace WriteLog {

namespace {

constexpr qint64 sectorBytes = 512; // what a disk writes as a whole

// All of it under the lock, for the history has several threads.
std::mutex guard;
QByteArray folder;
std::vector<Event> events;
QHash<QByteArray, int> fileByName;
QHash<int, int> fileByDescriptor;
int lastFile = 0;

using Kind = Event::Kind;

bool isName(Kind kind)
{
    return kind == Kind::create || kind == Kind::rename || kind == Kind::unlink;
}

/// The name in the folder; empty for what is elsewhere.
QByteArray nameOf(const char* path)
{
    const QByteArray whole(path);
    if (whole + '/' == folder)
        return ".";
    return !folder.isEmpty() && whole.startsWith(folder) ? whole.sliced(folder.size()) : QByteArray();
}

void opened(const char* path, int flags, int descriptor)
{
    const std::scoped_lock lock(guard);
    const QByteArray name = nameOf(path);
    if (name.isEmpty() || descriptor < 0)
        return;
    if ((flags & O_CREAT) != 0 && !fileByName.contains(name)) {
        fileByName.insert(name, ++lastFile);
        events.push_back({.kind = Kind::create, .file = lastFile, .name = name, .newName = {}, .bytes = {}});
    }
    const int file = fileByName.value(name);
    if (file == 0)
        return;
    fileByDescriptor.insert(descriptor, file);
    if ((flags & O_TRUNC) != 0)
        events.push_back({.kind = Kind::truncate, .file = file, .name = {}, .newName = {}, .bytes = {}});
}

void happened(int descriptor, Kind kind, qint64 offset = 0, const QByteArray& bytes = {})
{
    const std::scoped_lock lock(guard);
    if (const int file = fileByDescriptor.value(descriptor); file != 0)
        events.push_back({.kind = kind, .file = file, .name = {}, .newName = {}, .offset = offset, .bytes = bytes});
}

void put(QByteArray& content, qint64 offset, QByteArrayView bytes)
{
    if (content.size() < offset + bytes.size())
        content.resize(offset + bytes.size(), '\0');
    std::ranges::copy(bytes, content.begin() + offset);
}

/// The files by number, with what the names say.
Files named(const QMap<int, QByteArray>& contents, const std::vector<const Event*>& names)
{
    QMap<QByteArray, int> present;
    for (const Event* event : names) {
        if (event->kind == Kind::create)
            present.insert(event->name, event->file);
        else if (event->kind == Kind::unlink)
            present.remove(event->name);
        else if (const int file = present.take(event->name); file != 0)
            present.insert(event->newName, file);
    }
    Files files;
    for (auto entry = present.cbegin(); entry != present.cend(); ++entry)
        files.insert(entry.key(), contents.value(entry.value()));
    return files;
}

} // namespace

void listen(const QByteArray& path)
{
    const std::scoped_lock lock(guard);
    folder = path + '/';
    fileByName.insert(".", ++lastFile); // which is flushed, too
}

std::size_t count()
{
    const std::scoped_lock lock(guard);
    return events.size();
}

Files afterKill(std::size_t happenedSoFar)
{
    QMap<int, QByteArray> contents;
    std::vector<const Event*> names;
    for (std::size_t i = 0; i < happenedSoFar; ++i) {
        const Event& event = events[i];
        if (isName(event.kind))
            names.push_back(&event);
        else if (event.kind == Kind::write)
            put(contents[event.file], event.offset, event.bytes);
        else if (event.kind == Kind::truncate)
            contents[event.file].resize(event.offset, '\0');
    }
    return named(contents, names);
}

Files afterPowerLoss(std::size_t happenedSoFar, std::mt19937& random)
{
    QHash<int, std::size_t> flushed; // by file, up to which event
    std::size_t namesFlushed = 0;
    for (std::size_t i = 0; i < happenedSoFar; ++i) {
        if (events[i].kind == Kind::sync)
            namesFlushed = flushed[events[i].file] = i;
    }
    const std::size_t namesKept = std::uniform_int_distribution(namesFlushed, happenedSoFar)(random);
    QMap<int, QByteArray> contents;
    std::vector<const Event*> names;
    QSet<int> older; // files that are longer than they should be, so that what was written since has no room
    for (std::size_t i = 0; i < happenedSoFar; ++i) {
        const Event& event = events[i];
        if (isName(event.kind)) {
            if (i < namesKept)
                names.push_back(&event);
        } else if (event.kind == Kind::truncate) {
            if (i < namesKept)
                contents[event.file].resize(event.offset, '\0');
            else
                older.insert(event.file);
        } else if (event.kind == Kind::write && !older.contains(event.file)) {
            const bool isFlushed = flushed.contains(event.file) && i < flushed.value(event.file);
            for (qint64 at = 0; at < event.bytes.size(); at += sectorBytes) {
                if (isFlushed || random() % 4 != 0)
                    put(contents[event.file], event.offset + at,
                        QByteArrayView(event.bytes)
                            .sliced(at)
                            .first(std::min<qint64>(sectorBytes, event.bytes.size() - at)));
            }
        }
    }
    return named(contents, names);
}

} // namespace WriteLog

// ── In the place of the C library's

namespace {

template <typename Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    static const auto real = next<int(const char*, int, ...)>("open");
    const int descriptor = real(path, flags, mode);
    WriteLog::opened(path, flags, descriptor);
    return descriptor;
}

ssize_t write(int descriptor, const void* bytes, size_t size)
{
    static const auto real = next<ssize_t(int, const void*, size_t)>("write");
    const off_t offset = lseek(descriptor, 0, SEEK_CUR);
    const ssize_t written = real(descriptor, bytes, size);
    if (written > 0)
        WriteLog::happened(descriptor, WriteLog::Kind::write, offset, {static_cast<const char*>(bytes), written});
    return written;
}

ssize_t pwrite(int descriptor, const void* bytes, size_t size, off_t offset)
{
    static const auto real = next<ssize_t(int, const void*, size_t, off_t)>("pwrite");
    const ssize_t written = real(descriptor, bytes, size, offset);
    if (written > 0)
        WriteLog::happened(descriptor, WriteLog::Kind::write, offset, {static_cast<const char*>(bytes), written});
    return written;
}

int ftruncate(int descriptor, off_t size) noexcept
{
    static const auto real = next<int(int, off_t)>("ftruncate");
    WriteLog::happened(descriptor, WriteLog::Kind::truncate, size);
    return real(descriptor, size);
}

int fsync(int descriptor)
{
    static const auto real = next<int(int)>("fsync");
    const int result = real(descriptor);
    WriteLog::happened(descriptor, WriteLog::Kind::sync);
    return result;
}

int fdatasync(int descriptor)
{
    static const auto real = next<int(int)>("fdatasync");
    const int result = real(descriptor);
    WriteLog::happened(descriptor, WriteLog::Kind::sync);
    return result;
}

int close(int descriptor)
{
    static const auto real = next<int(int)>("close");
    {
        const std::scoped_lock lock(WriteLog::guard);
        WriteLog::fileByDescriptor.remove(descriptor);
    }
    return real(descriptor);
}

int rename(const char* from, const char* to) noexcept
{
    static const auto real = next<int(const char*, const char*)>("rename");
    const std::scoped_lock lock(WriteLog::guard);
    const int result = real(from, to);
    const QByteArray name = WriteLog::nameOf(from);
    if (result == 0 && !name.isEmpty()) {
        const QByteArray newName = WriteLog::nameOf(to);
        const int file = WriteLog::fileByName.take(name);
        WriteLog::fileByName.insert(newName, file);
        WriteLog::events.push_back(
            {.kind = WriteLog::Kind::rename, .file = file, .name = name, .newName = newName, .bytes = {}});
    }
    return result;
}

int unlink(const char* path) noexcept
{
    static const auto real = next<int(const char*)>("unlink");
    const std::scoped_lock lock(WriteLog::guard);
    const int result = real(path);
    const QByteArray name = WriteLog::nameOf(path);
    if (result == 0 && !name.isEmpty())
        WriteLog::events.push_back({.kind = WriteLog::Kind::unlink,
                                    .file = WriteLog::fileByName.take(name),
                                    .name = name,
                                    .newName = {},
                                    .bytes = {}});
    return result;
}
}
