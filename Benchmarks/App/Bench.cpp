#include "Bench.h"

#include "Keyboard.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QThread>
#include <QUuid>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;
using Clipboard::Testing::VirtualSession;

namespace Clipboard::Benchmarks {

namespace {

// Super, Shift and V as X11/keysymdef.h numbers their symbols.
constexpr std::initializer_list<quint32> hotKey = {0xffeb, 0xffe1, 0x0076};
constexpr unsigned long betweenPresses = 50;    // ms; nobody presses it again sooner
constexpr QRect listInPanel(60, 150, 200, 260); // logical pixels; titles of several rows
constexpr int patience = 60'000;                // ms for a moment to come

/// Text of that size with words that differ from entry to entry.
QByteArray text(int number, int bytes)
{
    QByteArray result = "entry " + QByteArray::number(number);
    for (int word = 0; result.size() < bytes; ++word) {
        result += ' ' + QByteArray::number(number * 7919 + word * 104729, 36);
    }
    result.truncate(bytes);
    return result;
}

QByteArray historyOf(Filling filling)
{
    QByteArray json = "[";
    for (int i = 0; i < filling.entries; ++i) {
        json += (i > 0 ? ",{\"id\":\"" : "{\"id\":\"") +
                QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toLatin1() +
                R"(","type":"text","content":")" + text(i, filling.bytes) + R"(","createdAt":)" +
                QByteArray::number(750'000'000 - i) + R"(,"isPinned":false})";
    }
    return json + "]";
}

} // namespace

Bench::Bench(Filling filling, int scale, VirtualSession::Kind kind)
    : Bench(filling.entries > 0 ? historyOf(filling) : QByteArray(), scale, kind)
{
}

Bench::Bench(const QByteArray& history, int scale, VirtualSession::Kind kind)
    : screen(u"/dev/shm/tessaly-screen-XXXXXX"_s)
    , session({.kind = kind, .size = VirtualSession::Options().size * scale, .framebuffer = screen.path()})
    , tessaly(session, QStringLiteral(TESSALY_PROGRAM))
    , m_scale(scale)
{
    session.setEnvironment(u"QT_SCALE_FACTOR"_s, QString::number(scale));
    if (!session.failure().isEmpty()) {
        giveUp(session.failure());
    }
    QDir().mkpath(tessaly.dataFolder());
    QFile file(tessaly.historyFile());
    if (!history.isEmpty() && !(file.open(QFile::WriteOnly) && file.write(history) == history.size())) {
        giveUp(u"The history could not be written."_s);
    }
    file.close();
    restart();
}

void Bench::restart()
{
    const Clock::time_point begin = Clock::now();
    const std::optional<Clock::time_point> watching = tessaly.start();
    if (!watching) {
        giveUp(u"The program did not start."_s);
    }
    m_startUp = std::chrono::duration<double, std::milli>(*watching - begin).count();
}

Clock::time_point Bench::pressHotKey(Keyboard& keyboard)
{
    return keyboard.press(hotKey);
}

double Bench::showPanel(Keyboard& keyboard)
{
    QThread::msleep(betweenPresses);
    tessaly.moments().clear();
    const Clock::time_point pressed = pressHotKey(keyboard);
    const double time = until("panel-painted", pressed);
    if (!tessaly.waitForPanel(true)) {
        giveUp(u"The panel did not come up."_s);
    }
    return time;
}

void Bench::hidePanel(Keyboard& keyboard)
{
    QThread::msleep(betweenPresses);
    pressHotKey(keyboard);
    if (!tessaly.waitForPanel(false)) {
        giveUp(u"The panel did not go away."_s);
    }
}

QRect Bench::listOnScreen()
{
    const std::optional<Testing::RunningTessaly::Window> panel = tessaly.panel();
    if (!panel)
        giveUp(u"The panel is not there."_s);
    return {panel->geometry.topLeft() + listInPanel.topLeft() * m_scale, listInPanel.size() * m_scale};
}

double Bench::until(const QByteArray& moment, Clock::time_point begin)
{
    const std::optional<Clock::time_point> time = tessaly.moments().next(moment, patience);
    if (!time) {
        giveUp(u"No \"%1\" came."_s.arg(QLatin1StringView(moment)));
    }
    return std::chrono::duration<double, std::milli>(*time - begin).count();
}

void row(const QString& what, const QString& measured, const QString& unit, const QString& goal)
{
    std::printf("%s\t%s\t%s\t%s\n", qPrintable(what), qPrintable(measured), qPrintable(unit), qPrintable(goal));
    std::fflush(stdout);
}

void row(const QString& what, double measured, const QString& unit, const QString& goal)
{
    row(what, QString::number(measured, 'f', measured < 10 ? 2 : 1), unit, goal);
}

void row(const QString& what, const std::vector<double>& values, const QString& goal)
{
    row(what, u"%1 (slowest %2)"_s.arg(median(values), 0, 'f', 1).arg(maximum(values), 0, 'f', 1), u"ms"_s, goal);
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double maximum(const std::vector<double>& values)
{
    return *std::ranges::max_element(values);
}

QByteArray pictureOf(QRgb color)
{
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(color);
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QBuffer::WriteOnly) || !image.save(&buffer, "PNG"))
        giveUp(u"A picture could not be made."_s);
    return png;
}

void giveUp(const QString& why)
{
    std::fprintf(stderr, "%s\n", qPrintable(why));
    std::exit(1);
}

} // namespace Clipboard::Benchmarks
