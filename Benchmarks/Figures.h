#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QTextStream>

#include <algorithm>
#include <functional>
#include <vector>

/// The rows of the benchmark programs that time a piece of the system alone.
namespace Figures {

/// The median of several runs, in milliseconds.
template <typename Run>
double median(
    int runs, Run run, const std::function<void()>& prepare = [] {})
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        prepare();
        QElapsedTimer timer;
        timer.start();
        run();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

inline void report(const QString& name, double milliseconds, const QString& goal)
{
    QTextStream(stdout) << name << '\t' << QString::number(milliseconds, 'f', 3) << "\tms\t" << goal << '\n';
}

} // namespace Figures
