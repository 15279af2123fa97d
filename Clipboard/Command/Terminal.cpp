#include "Terminal.h"

#include "PreviewLine.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace Clipboard::Command::Terminal {

namespace {

// Lines of input are entries' names; whatever is longer is none.
constexpr size_t longestLine = 4096;

} // namespace

bool isInput()
{
    return ::isatty(STDIN_FILENO) != 0;
}

bool isOutput()
{
    return ::isatty(STDOUT_FILENO) != 0;
}

bool hasColor()
{
    return isOutput() && qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb";
}

qsizetype columns()
{
    winsize size = {};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

std::optional<QByteArray> readAll(qint64 limit, int file)
{
    constexpr qsizetype step = qsizetype{64} * 1024;
    QByteArray bytes;
    for (;;) {
        const qsizetype before = bytes.size();
        bytes.resize(before + step);
        const ssize_t count = ::read(file, bytes.data() + before, step);
        bytes.resize(before + std::max<ssize_t>(count, 0));
        if (count == 0)
            return bytes;
        if ((count < 0 && errno != EINTR) || bytes.size() > limit)
            return std::nullopt;
    }
}

std::optional<QString> readLine()
{
    QByteArray line(longestLine, '\0');
    if (!std::fgets(line.data(), static_cast<int>(line.size()), stdin))
        return std::nullopt;
    line.truncate(static_cast<qsizetype>(qstrlen(line.constData())));
    return QString::fromUtf8(line).trimmed();
}

bool write(QByteArrayView bytes)
{
    const auto size = static_cast<size_t>(bytes.size());
    return (size == 0 || std::fwrite(bytes.data(), 1, size, stdout) == size) && std::fflush(stdout) == 0;
}

bool printLine(QStringView line)
{
    return write(line.toUtf8() + '\n');
}

void complain(QStringView text)
{
    std::fprintf(stderr, "tessaly: %s\n", Bus::withoutControls(text).toUtf8().constData()); // it may quote an argument
}

} // namespace Clipboard::Command::Terminal
