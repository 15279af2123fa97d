#include "Confinement.h"

#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>

#include <cerrno>
#include <csignal>
#include <sched.h>

namespace Clipboard {

namespace {

// A picture at its bound takes 512 MiB decoded and half as much again while it is turned grey; the recognition of the
// largest page 400 MiB; the libraries and their data 200 MiB.
constexpr rlim_t maxAddressSpace = rlim_t{2} * 1024 * 1024 * 1024;

// Who starts the worker ends it after 30 s at the latest. This holds when they cannot.
constexpr rlim_t maxProcessorSeconds = 35;

// The sanitizers map terabytes, and look for leaks from a second process.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

void limit(__rlimit_resource resource, rlim_t most)
{
    const rlimit bound{most, most};
    ::setrlimit(resource, &bound);
}

/// Threads may be started, processes not.
void forbidOtherPrograms()
{
    scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    if (!filter)
        return;
    const scmp_arg_cmp isNoThread = SCMP_A0_64(SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0);
    seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(execve), 0);
    seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(execveat), 0);
    seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(fork), 0);
    seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(vfork), 0);
    seccomp_rule_add_array(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(clone), 1, &isNoThread);
    // Its flags lie in memory, where no filter sees them; without it the C library takes clone().
    seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0);
    seccomp_load(filter);
    seccomp_release(filter);
}

} // namespace

void confineThisProcess()
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    limit(RLIMIT_CPU, maxProcessorSeconds);
    if constexpr (!isSanitized) {
        limit(RLIMIT_CORE, 0);
        ::prctl(PR_SET_DUMPABLE, 0); // where dumps go to a program, the limit says nothing
        limit(RLIMIT_AS, maxAddressSpace);
        forbidOtherPrograms();
    }
}

} // namespace Clipboard
