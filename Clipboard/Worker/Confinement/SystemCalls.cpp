#include "SystemCalls.h"

#include <linux/netlink.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>

#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <termios.h>
#include <unistd.h>

namespace Clipboard {

namespace {

// Machines of 32 bits have other calls for the same, and nobody has tried there which.
constexpr bool isKnownMachine = sizeof(void*) == 8;

class Filter
{
public:
    // What is not on the list seems to be missing: the C library then takes the older call that is.
    Filter()
        : m_context(seccomp_init(SCMP_ACT_ERRNO(ENOSYS)))
    {
    }

    /// A call that this machine does not have is passed over.
    void allow(std::initializer_list<int> calls)
    {
        for (const int call : calls)
            seccomp_rule_add(m_context.get(), SCMP_ACT_ALLOW, call, 0);
    }
    /// Several rules for one call add up; the conditions of one must all hold.
    void allowWhen(int call, std::initializer_list<scmp_arg_cmp> conditions)
    {
        seccomp_rule_add_array(m_context.get(), SCMP_ACT_ALLOW, call, unsigned(conditions.size()), conditions.begin());
    }

    [[nodiscard]] bool load() const { return m_context && seccomp_load(m_context.get()) == 0; }

private:
    struct Release
    {
        void operator()(void* context) const { seccomp_release(context); }
    };
    std::unique_ptr<void, Release> m_context;
};

scmp_arg_cmp isEqual(unsigned argument, scmp_datum_t value)
{
    return {argument, SCMP_CMP_EQ, value, 0};
}

scmp_arg_cmp hasBits(unsigned argument, scmp_datum_t mask, scmp_datum_t value)
{
    return {argument, SCMP_CMP_MASKED_EQ, mask, value};
}

void allowCalculating(Filter& filter)
{
    filter.allow({SCMP_SYS(brk),
                  SCMP_SYS(mmap),
                  SCMP_SYS(munmap),
                  SCMP_SYS(mremap),
                  SCMP_SYS(mprotect),
                  SCMP_SYS(madvise),
                  SCMP_SYS(futex),
                  SCMP_SYS(membarrier),
                  SCMP_SYS(rseq),
                  SCMP_SYS(set_robust_list),
                  SCMP_SYS(set_tid_address),
                  SCMP_SYS(arch_prctl),
                  SCMP_SYS(sched_yield),
                  SCMP_SYS(sched_getaffinity),
                  SCMP_SYS(sched_getparam),
                  SCMP_SYS(sched_getscheduler),
                  SCMP_SYS(getpid),
                  SCMP_SYS(gettid),
                  SCMP_SYS(getppid),
                  SCMP_SYS(getuid),
                  SCMP_SYS(geteuid),
                  SCMP_SYS(getgid),
                  SCMP_SYS(getegid),
                  SCMP_SYS(uname),
                  SCMP_SYS(sysinfo),
                  SCMP_SYS(getrusage),
                  SCMP_SYS(times),
                  SCMP_SYS(getrandom),
                  SCMP_SYS(clock_gettime),
                  SCMP_SYS(clock_getres),
                  SCMP_SYS(gettimeofday),
                  SCMP_SYS(time),
                  SCMP_SYS(nanosleep),
                  SCMP_SYS(clock_nanosleep),
                  SCMP_SYS(rt_sigaction),
                  SCMP_SYS(rt_sigprocmask),
                  SCMP_SYS(rt_sigreturn),
                  SCMP_SYS(sigaltstack),
                  SCMP_SYS(restart_syscall),
                  SCMP_SYS(exit),
                  SCMP_SYS(exit_group)});
    // Threads, no processes. The flags of clone3() lie in memory, where no filter sees them.
    filter.allowWhen(SCMP_SYS(clone), {hasBits(0, CLONE_THREAD, CLONE_THREAD)});
    filter.allowWhen(SCMP_SYS(prctl), {isEqual(0, PR_SET_NAME)});
    filter.allowWhen(SCMP_SYS(prlimit64), {isEqual(0, 0), isEqual(2, 0)});      // asking for our own
    filter.allowWhen(SCMP_SYS(tgkill), {isEqual(0, scmp_datum_t(::getpid()))}); // abort()
}

void allowReading(Filter& filter)
{
    constexpr scmp_datum_t writing = O_ACCMODE | O_CREAT | O_TRUNC | O_APPEND;
    filter.allowWhen(SCMP_SYS(open), {hasBits(1, writing, O_RDONLY)});
    filter.allowWhen(SCMP_SYS(openat), {hasBits(2, writing, O_RDONLY)});
    filter.allow({SCMP_SYS(read),       SCMP_SYS(readv),      SCMP_SYS(pread64),    SCMP_SYS(lseek),
                  SCMP_SYS(close),      SCMP_SYS(stat),       SCMP_SYS(lstat),      SCMP_SYS(fstat),
                  SCMP_SYS(newfstatat), SCMP_SYS(statx),      SCMP_SYS(statfs),     SCMP_SYS(fstatfs),
                  SCMP_SYS(access),     SCMP_SYS(faccessat),  SCMP_SYS(faccessat2), SCMP_SYS(readlink),
                  SCMP_SYS(readlinkat), SCMP_SYS(getdents64), SCMP_SYS(getcwd),     SCMP_SYS(fadvise64)});
}

/// Writing to what is open already, and waiting for it.
void allowExchanging(Filter& filter)
{
    filter.allow({SCMP_SYS(write), SCMP_SYS(writev), SCMP_SYS(dup), SCMP_SYS(pipe2), SCMP_SYS(eventfd2), SCMP_SYS(poll),
                  SCMP_SYS(ppoll), SCMP_SYS(select), SCMP_SYS(pselect6)});
    // The others could have signals sent to a process of our choice,
    for (const int command : {F_GETFD, F_SETFD, F_GETFL, F_SETFL, F_DUPFD, F_DUPFD_CLOEXEC})
        filter.allowWhen(SCMP_SYS(fcntl), {isEqual(1, scmp_datum_t(command))});
    // or type on somebody's terminal.
    for (const scmp_datum_t request : {FIONREAD, TCGETS})
        filter.allowWhen(SCMP_SYS(ioctl), {isEqual(1, request)});
}

void allowWebServers(Filter& filter)
{
    constexpr scmp_datum_t kind = 0xF; // of socket; the rest are flags
    for (const scmp_datum_t family : {AF_INET, AF_INET6})
        for (const scmp_datum_t type : {SOCK_STREAM, SOCK_DGRAM})
            filter.allowWhen(SCMP_SYS(socket), {isEqual(0, family), hasBits(1, kind, type)});
    // Whether there is IPv6 at all is asked of the kernel. The daemons of the resolver, behind sockets of AF_UNIX, have
    // to stay without an answer: the same way leads to the session's bus and to the display. The name servers know as
    // much.
    filter.allowWhen(SCMP_SYS(socket), {isEqual(0, AF_NETLINK), isEqual(2, NETLINK_ROUTE)});
    filter.allow({SCMP_SYS(connect), SCMP_SYS(bind), SCMP_SYS(sendto), SCMP_SYS(sendmsg), SCMP_SYS(sendmmsg),
                  SCMP_SYS(recvfrom), SCMP_SYS(recvmsg), SCMP_SYS(getsockname), SCMP_SYS(getpeername),
                  SCMP_SYS(getsockopt), SCMP_SYS(setsockopt), SCMP_SYS(shutdown)});
}

} // namespace

bool allowFewSystemCalls(Network network)
{
    if (!isKnownMachine)
        return false;
    Filter filter;
    allowCalculating(filter);
    allowReading(filter);
    allowExchanging(filter);
    if (network == Network::webServers)
        allowWebServers(filter);
    return filter.load();
}

} // namespace Clipboard
