#include "Confinement.h"

#include "ReadableFiles.h"
#include "SystemCalls.h"

#include <sys/prctl.h>
#include <sys/resource.h>

#include <csignal>

namespace Clipboard {

namespace {

// A picture at its bound takes 512 MiB decoded and half as much again while it is turned grey; the recognition of the
// largest page 400 MiB; the libraries and their data 200 MiB.
constexpr rlim_t maxAddressSpace = rlim_t{2} * 1024 * 1024 * 1024;

// Who starts the worker ends it after 30 s at the latest. This holds when they cannot.
constexpr rlim_t maxProcessorSeconds = 35;

void limit(__rlimit_resource resource, rlim_t most)
{
    const rlimit bound{most, most};
    ::setrlimit(resource, &bound);
}

} // namespace

void confineThisProcess(const TaskNeeds& needs, const std::function<void(const char* problem)>& report)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    limit(RLIMIT_CPU, maxProcessorSeconds);
    if constexpr (!isConfinable)
        return;
    limit(RLIMIT_CORE, 0);
    ::prctl(PR_SET_DUMPABLE, 0); // where dumps go to a program, the limit says nothing
    limit(RLIMIT_AS, maxAddressSpace);
    if (!allowReadingOnly(needs.readable))
        report("the kernel offers no Landlock: any file of the user could be read");
    if (!allowFewSystemCalls(needs.network ? Network::webServers : Network::none))
        report("the kernel offers no seccomp filter: any system call could be made");
}

} // namespace Clipboard
