#include "Support/CoreDumps.h"

#include <optional>

#include <sys/resource.h>

namespace ClipboardCore {

namespace {

std::optional<rlim_t> found;

void setLimit(rlim_t bytes)
{
    rlimit limit = {};
    if (::getrlimit(RLIMIT_CORE, &limit) < 0)
        return;
    if (!found)
        found = limit.rlim_cur;
    limit.rlim_cur = bytes; // the hard limit stays, or nobody could raise it again
    ::setrlimit(RLIMIT_CORE, &limit);
}

} // namespace

void CoreDumps::forbid()
{
    setLimit(0);
}

CoreDumps::AllowedForNow::AllowedForNow()
{
    if (found)
        setLimit(*found);
}

CoreDumps::AllowedForNow::~AllowedForNow()
{
    if (found)
        setLimit(0);
}

} // namespace ClipboardCore
