#include "Bench.h"
#include "Keyboard.h"
#include "ProcessFigures.h"

#include <QProcess>
#include <QThread>

#include <csignal>

using namespace Qt::StringLiterals;

namespace Clipboard::Benchmarks {

using Clipboard::Testing::VirtualSession;

namespace {

void startRow(const QString& what, Filling filling, int times, const QString& goal)
{
    Bench bench(filling);
    std::vector<double> values;
    for (int i = 0; i < times; ++i) {
        bench.tessaly.stop(SIGTERM);
        bench.restart();
        values.push_back(bench.startUp());
    }
    row(what, median(values), u"ms"_s, goal);
}

void emptyRow(int times)
{
    VirtualSession session;
    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(times));
    for (int i = 0; i < times; ++i) {
        const Clock::time_point begin = Clock::now();
        if (session.run(QStringLiteral(EMPTY_TRAY_PROGRAM), {u"--once"_s}).exitCode != 0)
            giveUp(u"The empty program failed."_s);
        values.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    row(u"start: an empty tray program, its end included, for comparison"_s, median(values), u"ms"_s, {});
}

void idleRows(Effort effort)
{
    Bench bench;
    const qint64 process = bench.tessaly.processID();
    // The start settles; the threads that it needed for a moment leave after half a minute.
    QThread::sleep(static_cast<unsigned long>(effort.times(35, 2)));
    const int seconds = effort.times(60, 3);
    const qint64 switches = ProcessFigures::contextSwitches(process);
    const double time = ProcessFigures::processorTime(process);
    QThread::sleep(static_cast<unsigned long>(seconds));
    row(u"idle: wake-ups in %1 s"_s.arg(seconds), QString::number(ProcessFigures::contextSwitches(process) - switches),
        u""_s, u"0"_s);
    row(u"idle: processor time in %1 s"_s.arg(seconds), ProcessFigures::processorTime(process) - time, u"ms"_s, u"0"_s);
}

void memoryRows()
{
    {
        VirtualSession session;
        const QProcess& empty = session.start(QStringLiteral(EMPTY_TRAY_PROGRAM));
        QThread::sleep(2);
        row(u"memory: an empty tray program, for comparison"_s, ProcessFigures::proportionalMemory(empty.processId()),
            u"MB PSS"_s, {});
    }
    {
        Bench bench({.entries = 500, .bytes = 200});
        QThread::sleep(1);
        const qint64 process = bench.tessaly.processID();
        row(u"memory: 500 small entries, panel never shown"_s, ProcessFigures::proportionalMemory(process), u"MB PSS"_s,
            u"≤ 16"_s);
        Keyboard keyboard(bench.session.display());
        bench.showPanel(keyboard);
        QThread::sleep(1);
        row(u"memory: after showing"_s, ProcessFigures::proportionalMemory(process), u"MB PSS"_s, u"≤ 24"_s);
    }
    Bench bench({.entries = 500, .bytes = 20'000});
    QThread::sleep(1);
    row(u"memory: 500 of 20 KB"_s, ProcessFigures::proportionalMemory(bench.tessaly.processID()), u"MB PSS"_s,
        u"≤ 40"_s);
}

} // namespace

void startRows(Effort effort)
{
    emptyRow(effort.times(21, 3));
    startRow(u"start: fresh"_s, {}, effort.times(21, 3), u"≤ 40"_s);
    startRow(u"start: 500 of 20 KB"_s, {.entries = 500, .bytes = 20'000}, effort.times(11, 2), u"≤ 50"_s);
    idleRows(effort);
    memoryRows();
}

} // namespace Clipboard::Benchmarks
