#include "Support/CoreDumps.h"

#include "Support/RegularFile.h"

#include <QByteArray>

#include <optional>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace ClipboardCore {

namespace {

struct Rule
{
    rlim_t bytes = 0;
    QByteArray kindsOfMemory{"0"}; // a mask, see "Controlling which mappings are written to the core dump" in core(5)
};

std::optional<Rule> found;

/// Exchanges the mask of this process; it is handed on to the programs that are started.
QByteArray exchangeKindsOfMemory(const QByteArray& mask)
{
    constexpr qsizetype longestMask = 16; // eight digits and an end of line
    const int file = ::open("/proc/self/coredump_filter", O_RDWR | O_CLOEXEC);
    if (file < 0)
        return mask;
    QByteArray before(longestMask, Qt::Uninitialized);
    const ssize_t length =
        RegularFile::uninterrupted([&] { return ::pread(file, before.data(), static_cast<size_t>(before.size()), 0); });
    before.truncate(length);
    RegularFile::uninterrupted([&] { return ::pwrite(file, mask.data(), static_cast<size_t>(mask.size()), 0); });
    ::close(file);
    return before.trimmed().isEmpty() ? mask : "0x" + before.trimmed();
}

void apply(const Rule& rule)
{
    rlimit limit = {};
    if (::getrlimit(RLIMIT_CORE, &limit) < 0)
        return;
    const Rule before{limit.rlim_cur, exchangeKindsOfMemory(rule.kindsOfMemory)};
    if (!found)
        found = before;
    limit.rlim_cur = rule.bytes; // the hard limit stays, or nobody could raise it again
    ::setrlimit(RLIMIT_CORE, &limit);
}

} // namespace

void CoreDumps::forbid()
{
    apply({});
}

CoreDumps::AllowedForNow::AllowedForNow()
{
    if (found)
        apply(*found);
}

CoreDumps::AllowedForNow::~AllowedForNow()
{
    if (found)
        apply({});
}

} // namespace ClipboardCore
