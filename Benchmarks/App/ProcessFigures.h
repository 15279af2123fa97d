#pragma once

#include <QtGlobal>

namespace Clipboard::Benchmarks {

/// What the kernel says of a process (proc(5)). Figures that cannot be read are 0.
struct ProcessFigures
{
    /// All threads: how often one of them was woken or made to wait.
    static qint64 contextSwitches(qint64 process);
    /// Processor time so far, in ms.
    static double processorTime(qint64 process);
    /// Its share of the memory that it maps (PSS), in MB of 2^20 bytes.
    static double proportionalMemory(qint64 process);
    /// The most memory it had resident since the last resetPeak(), in MB.
    static double peakMemory(qint64 process);
    static void resetPeak(qint64 process);
    /// Bytes it asked the system to write so far, to whatever it had open.
    static qint64 written(qint64 process);
};

} // namespace Clipboard::Benchmarks
