#include "Bench.h"
#include "HardEntries.h"
#include "Keyboard.h"

#include <QThread>

using namespace Qt::StringLiterals;

namespace Clipboard::Benchmarks {

namespace {

constexpr quint32 downKey = 0xff54;  // X key symbols, as X11/keysymdef.h numbers them
constexpr unsigned long settle = 60; // ms; the frames of one step are out before the next begins

void showRows(int times)
{
    Bench bench({.entries = 500, .bytes = 20'000});
    Keyboard keyboard(bench.session.display());
    row(u"show: first time, 500 of 20 KB"_s, bench.showPanel(keyboard), u"ms"_s, u""_s);
    std::vector<double> values;
    for (int i = 0; i < times; ++i) {
        bench.hidePanel(keyboard);
        values.push_back(bench.showPanel(keyboard));
    }
    row(u"show: hot key to first painted frame, 500 of 20 KB"_s, median(values), u"ms"_s, u"≤ 12"_s);
}

void searchRow(const QString& what, Filling filling, const QByteArray& query, const QString& goal)
{
    Bench bench(filling);
    Keyboard keyboard(bench.session.display());
    bench.showPanel(keyboard);
    std::vector<double> values;
    for (const char letter : query) {
        QThread::msleep(settle);
        bench.tessaly.moments().clear();
        // The key symbols of Latin letters, digits and the blank are their ASCII codes.
        const Clock::time_point begin = keyboard.press({static_cast<quint32>(letter)});
        values.push_back(bench.until("list-painted", begin));
    }
    row(what, u"%1 (slowest %2)"_s.arg(values.back(), 0, 'f', 1).arg(maximum(values), 0, 'f', 1), u"ms"_s, goal);
}

void selectionRow(int times)
{
    Bench bench({.entries = 500, .bytes = 20'000});
    Keyboard keyboard(bench.session.display());
    bench.showPanel(keyboard);
    std::vector<double> values;
    for (int i = 0; i < times; ++i) {
        QThread::msleep(settle);
        bench.tessaly.moments().clear();
        const Clock::time_point begin = keyboard.press({downKey});
        values.push_back(bench.until("list-painted", begin));
    }
    row(u"selection move: arrow key to painted frame, 500 of 20 KB"_s, values, u"≤ 8"_s);
}

/// Down the whole list several times: each entry counts by its slowest visit, the first one included.
void hardSelectionRow(int rounds)
{
    const QList<HardEntry> entries = hardEntries();
    Bench bench(historyOf(entries));
    Keyboard keyboard(bench.session.display());
    bench.showPanel(keyboard);
    QString slowest;
    std::vector<double> values;
    for (int i = 1; i <= rounds * entries.size(); ++i) {
        QThread::msleep(settle);
        bench.tessaly.moments().clear();
        const Clock::time_point begin = keyboard.press({downKey});
        const double time = bench.until("list-painted", begin);
        if (values.empty() || time > maximum(values))
            slowest = entries.at(i % entries.size()).name;
        values.push_back(time);
    }
    row(u"selection move: the entries that are hardest to show"_s,
        u"%1 (slowest %2: %3)"_s.arg(median(values), 0, 'f', 1).arg(maximum(values), 0, 'f', 1).arg(slowest), u"ms"_s,
        u"≤ 8"_s);
}

} // namespace

void panelRows(Effort effort)
{
    showRows(effort.times(30, 3));
    // The bench's texts are words of digits and letters in base 36: a query like this leaves fewer at each key.
    const QByteArray query = "entry 41";
    searchRow(u"search: last key to painted list, 500 of 200 B"_s, {.entries = 500, .bytes = 200}, query, u"≤ 4"_s);
    searchRow(u"search: last key to painted list, 500 of 20 KB"_s, {.entries = 500, .bytes = 20'000}, query, u"≤ 8"_s);
    if (!effort.isShort) {
        searchRow(u"search: last key to painted list, 500 of 200 KB"_s, {.entries = 500, .bytes = 200'000}, query,
                  u"≤ 30"_s);
    }
    selectionRow(effort.times(40, 5));
    hardSelectionRow(effort.times(5, 1));
}

} // namespace Clipboard::Benchmarks
