// The figures of the whole program, measured from outside: docs/benchmarks.md says what each row means.
#include "Bench.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    const Clipboard::Benchmarks::Effort effort{QCoreApplication::arguments().contains("--short"_L1)};
    Clipboard::Benchmarks::startRows(effort);
    Clipboard::Benchmarks::captureRows(effort);
    Clipboard::Benchmarks::panelRows(effort);
    Clipboard::Benchmarks::safetyRows(effort);
    return 0;
}
