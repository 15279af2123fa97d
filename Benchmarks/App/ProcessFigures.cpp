#include "ProcessFigures.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Clipboard::Benchmarks {

namespace {

constexpr double kilobytesInMegabyte = 1024;

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

/// The number after "name:" in one of proc's lists.
qint64 field(const QByteArray& list, const QByteArray& name)
{
    for (const QByteArray& line : list.split('\n')) {
        if (line.startsWith(name + ':')) {
            return line.mid(name.size() + 1).simplified().split(' ').first().toLongLong();
        }
    }
    return 0;
}

QString folder(qint64 process)
{
    return u"/proc/%1/"_s.arg(process);
}

} // namespace

qint64 ProcessFigures::contextSwitches(qint64 process)
{
    qint64 sum = 0;
    const QDir tasks(folder(process) + u"task"_s);
    for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QByteArray status = readAll(tasks.filePath(task) + u"/status"_s);
        sum += field(status, "voluntary_ctxt_switches") + field(status, "nonvoluntary_ctxt_switches");
    }
    return sum;
}

double ProcessFigures::processorTime(qint64 process)
{
    const QByteArray stat = readAll(folder(process) + u"stat"_s);
    // Field 2 is the name in brackets and may hold blanks; user and system time are fields 14 and 15.
    const QByteArrayList fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    constexpr int userTime = 14 - 3;
    constexpr int systemTime = 15 - 3;
    if (fields.size() <= systemTime) {
        return 0;
    }
    return 1000.0 * (fields[userTime].toDouble() + fields[systemTime].toDouble()) /
           static_cast<double>(sysconf(_SC_CLK_TCK));
}

double ProcessFigures::proportionalMemory(qint64 process)
{
    return static_cast<double>(field(readAll(folder(process) + u"smaps_rollup"_s), "Pss")) / kilobytesInMegabyte;
}

double ProcessFigures::peakMemory(qint64 process)
{
    return static_cast<double>(field(readAll(folder(process) + u"status"_s), "VmHWM")) / kilobytesInMegabyte;
}

void ProcessFigures::resetPeak(qint64 process)
{
    QFile file(folder(process) + u"clear_refs"_s);
    if (file.open(QFile::WriteOnly)) {
        file.write("5");
    }
}

qint64 ProcessFigures::written(qint64 process)
{
    return field(readAll(folder(process) + u"io"_s), "wchar");
}

} // namespace Clipboard::Benchmarks
