#include "Bench.h"
#include "Keyboard.h"

using namespace Qt::StringLiterals;

namespace Clipboard::Benchmarks {

namespace {

double timeOf(Bench& bench, const QStringList& arguments, const QByteArray& input = {})
{
    const Clock::time_point begin = Clock::now();
    if (bench.session.run(bench.tessaly.program(), arguments, input).exitCode != 0)
        giveUp(u"the command \"%1\" failed"_s.arg(arguments.join(u' ')));
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

void toggleRow(int times)
{
    Bench bench({.entries = 500, .bytes = 20'000});
    Keyboard keyboard(bench.session.display());
    bench.showPanel(keyboard); // the first time costs more, whoever asks
    std::vector<double> values;
    for (int i = 0; i < times; ++i) {
        bench.hidePanel(keyboard);
        bench.tessaly.moments().clear();
        const Clock::time_point begin = Clock::now();
        bench.session.start(bench.tessaly.program(), {u"toggle"_s});
        values.push_back(bench.until("panel-painted", begin));
    }
    row(u"command: toggle to first painted frame, 500 of 20 KB"_s, values, u"≤ 40"_s);
}

void listRow(int times)
{
    Bench bench({.entries = 500, .bytes = 20'000});
    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(times));
    for (int i = 0; i < times; ++i)
        values.push_back(timeOf(bench, {u"list"_s}));
    row(u"command: list of 500"_s, values, u"≤ 25"_s);
}

void getRow(int times)
{
    constexpr qsizetype large = 50'000'000;
    Bench bench;
    (void)timeOf(bench, {u"add"_s}, QByteArray(large, 'x'));
    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(times));
    for (int i = 0; i < times; ++i)
        values.push_back(timeOf(bench, {u"get"_s, u"1"_s}));
    row(u"command: get of 50 MB"_s, values, u""_s);
}

} // namespace

void commandRows(Effort effort)
{
    toggleRow(effort.times(15, 1));
    listRow(effort.times(15, 1));
    getRow(effort.times(5, 1));
}

} // namespace Clipboard::Benchmarks
