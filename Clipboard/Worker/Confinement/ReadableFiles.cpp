#include "ReadableFiles.h"

#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <fcntl.h>
#include <unistd.h>

namespace Clipboard {

namespace {

constexpr quint64 readFile = LANDLOCK_ACCESS_FS_READ_FILE;
constexpr quint64 readFolder = LANDLOCK_ACCESS_FS_READ_DIR;

/// All that its first version knows. Moving a file to another folder, which came later, is forbidden without being
/// named.
constexpr quint64 everything =
    readFile | readFolder | LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
    LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_DIR |
    LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO |
    LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;

// The C library has no functions for these.

long createRuleset(const landlock_ruleset_attr* attributes, size_t size, quint32 flags)
{
    return ::syscall(SYS_landlock_create_ruleset, attributes, size, flags);
}

void allowReading(int ruleset, const QByteArray& path)
{
    const int file = ::open(path.constData(), O_PATH | O_CLOEXEC);
    if (file < 0)
        return;
    struct stat status
    {
    };
    const bool isFolder = ::fstat(file, &status) == 0 && S_ISDIR(status.st_mode);
    const landlock_path_beneath_attr rule{.allowed_access = isFolder ? readFile | readFolder : readFile,
                                          .parent_fd = file};
    ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0U);
    ::close(file);
}

} // namespace

bool canConfineFiles()
{
    return createRuleset(nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) > 0;
}

bool allowReadingOnly(const QByteArrayList& paths)
{
    const landlock_ruleset_attr attributes{.handled_access_fs = everything};
    const int ruleset = int(createRuleset(&attributes, sizeof(attributes), 0));
    if (ruleset < 0)
        return false;
    for (const QByteArray& path : paths)
        allowReading(ruleset, path);
    const bool isConfined =
        ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::syscall(SYS_landlock_restrict_self, ruleset, 0U) == 0;
    ::close(ruleset);
    return isConfined;
}

} // namespace Clipboard
