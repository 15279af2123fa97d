// The selection engine's own figures: how soon a copy is there, what a large one costs on its way in and out, and what
// silence costs. One line each: name, value, unit, goal, separated by tabs.

#include "ForeignClient.h"
#include "SelectionEngine.h"
#include "VirtualSession.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTextStream>

#include <algorithm>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Manner = ForeignClient::Answer::Manner;

namespace {

constexpr double mebibyte = 1024.0 * 1024.0;

[[noreturn]] void giveUp(const QString& why)
{
    QTextStream(stderr) << why << '\n';
    std::exit(1);
}

/// An engine and the number of copies it has read; whoever waits is woken at once.
class Engine
{
public:
    explicit Engine(const QByteArray& display)
    {
        X11::SelectionEngine::Options options;
        options.display = display;
        options.onChange = [this](const SelectionSnapshot& snapshot) {
            if (snapshot.isInitial)
                return;
            const std::scoped_lock lock(m_mutex);
            m_last = snapshot.content;
            ++m_count;
            m_changed.notify_all();
        };
        engine = X11::SelectionEngine::start(options);
    }

    /// Ends the process when they do not come.
    void waitFor(int count)
    {
        std::unique_lock lock(m_mutex);
        if (!m_changed.wait_for(lock, 30s, [&] { return m_count >= count; }))
            giveUp(u"The engine has read %1 of %2 copies."_s.arg(m_count).arg(count));
    }
    /// Until that many or until it reads no more.
    void waitUpTo(int count)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, 2s, [&] { return m_count >= count; });
    }
    int count()
    {
        const std::scoped_lock lock(m_mutex);
        return m_count;
    }
    void forget()
    {
        const std::scoped_lock lock(m_mutex);
        m_last = {};
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    SelectionContent m_last;
    int m_count = 0;

public:
    std::unique_ptr<X11::SelectionEngine> engine;
};

void report(const QString& name, double value, const QString& unit, const QString& goal)
{
    QTextStream(stdout) << name << '\t' << QString::number(value, 'f', 2) << '\t' << unit << '\t' << goal << '\n';
}

double milliseconds(const QElapsedTimer& clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() / 2];
}

/// A number of /proc/self/status, such as "VmHWM:" in KiB; for all threads together.
double statusNumber(const QString& file, const QByteArray& name)
{
    QFile status(file);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size()).trimmed().split(' ').first().toDouble();
    }
    return 0;
}

double wakeUps()
{
    double sum = 0;
    for (const QString& thread : QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        sum += statusNumber(u"/proc/self/task/%1/status"_s.arg(thread), "voluntary_ctxt_switches:");
    return sum;
}

/// From here on the peak counts anew. What is in use now, in MiB.
double resetPeak()
{
    QFile clear(u"/proc/self/clear_refs"_s);
    if (clear.open(QIODevice::WriteOnly))
        clear.write("5");
    return statusNumber(u"/proc/self/status"_s, "VmRSS:") / 1024;
}

double peak()
{
    return statusNumber(u"/proc/self/status"_s, "VmHWM:") / 1024;
}

void idle(const QByteArray& display, std::chrono::seconds duration)
{
    Engine engine(display);
    std::this_thread::sleep_for(500ms);
    const double before = wakeUps();
    std::this_thread::sleep_for(duration);
    // One of them is this thread's own sleep.
    report(u"engine: wake-ups in %1 s of silence"_s.arg(duration.count()), wakeUps() - before - 1, u""_s, u"0"_s);
}

void latency(const QByteArray& display, int copies)
{
    Engine engine(display);
    ForeignClient owner(display);
    std::vector<double> times;
    for (int i = 0; i < copies; ++i) {
        owner.offerText("copy " + QByteArray::number(i));
        QElapsedTimer clock;
        clock.start();
        owner.take();
        engine.waitFor(i + 1);
        times.push_back(milliseconds(clock));
        std::this_thread::sleep_for(5ms);
    }
    report(u"engine: owner change to snapshot, median"_s, median(times), u"ms"_s, u"≤ 1.5"_s);
}

void burst(const QByteArray& display, int copies)
{
    Engine engine(display);
    ForeignClient owner(display);
    for (int i = 0; i < copies; ++i) {
        owner.offerText("copy " + QByteArray::number(i));
        owner.take();
        std::this_thread::sleep_for(2ms);
    }
    engine.waitUpTo(copies);
    report(u"engine: read of %1 copies 2 ms apart"_s.arg(copies), engine.count(), u"copies"_s, u"all"_s);
}

void hungOwner(const QByteArray& display)
{
    Engine engine(display);
    ForeignClient hung(display);
    hung.offer({{"TARGETS", {.bytes = {}, .manner = Manner::Mute}}});
    hung.take();
    std::this_thread::sleep_for(100ms);
    ForeignClient next(display);
    next.offerText("next");
    QElapsedTimer clock;
    clock.start();
    next.take();
    engine.waitFor(1);
    report(u"engine: next copy after a hung owner"_s, milliseconds(clock), u"ms"_s, u"≤ 3"_s);
}

void takeOver(const QByteArray& display)
{
    Engine engine(display);
    ForeignClient owner(display);
    ForeignClient reader(display);
    owner.offerText("left behind");
    owner.take();
    engine.waitFor(1);
    std::this_thread::sleep_for(20ms);
    QElapsedTimer clock;
    clock.start();
    owner.die();
    while (!reader.convert("UTF8_STRING"))
        std::this_thread::yield();
    report(u"engine: owner's end to its content pasted"_s, milliseconds(clock), u"ms"_s, u""_s);
}

/// The other program is a process of its own, so that its memory is not counted.
void largeText(VirtualSession& session, qsizetype size)
{
    const QByteArray display = session.display().toLatin1();
    const QString megabytes = QString::number(size / 1'000'000);
    Engine engine(display);
    const QString file = session.homePath(u"large.txt"_s);
    const auto made =
        session.run(u"sh"_s, {u"-c"_s, u"yes 'a line of a large text' | head -c %1 > %2"_s.arg(size).arg(file)});
    if (made.exitCode != 0)
        giveUp(u"The large text could not be made."_s);
    double before = resetPeak();
    QElapsedTimer clock;
    session.start(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-quiet"_s, file});
    // xclip reads its input before it takes the selection.
    while (session.selectionOwner("CLIPBOARD") == 0)
        std::this_thread::sleep_for(1ms);
    clock.start();
    engine.waitFor(1);
    report(u"engine: %1 MB text in"_s.arg(megabytes), milliseconds(clock), u"ms"_s, u"≤ 300"_s);
    const double times = (peak() - before) * mebibyte / static_cast<double>(size);
    report(u"engine: %1 MB text in, peak"_s.arg(megabytes), times, u"× text"_s, u"≤ 4"_s);
    engine.forget();

    const QByteArray text(size, 'x');
    engine.engine->own(formsOfText(text));
    std::this_thread::sleep_for(100ms);
    before = resetPeak();
    clock.start();
    session.run(u"sh"_s, {u"-c"_s, u"xclip -selection clipboard -o > /dev/null"_s});
    report(u"engine: %1 MB text out, xclip's own time included"_s.arg(megabytes), milliseconds(clock), u"ms"_s, u""_s);
    const double more = (peak() - before) * mebibyte / static_cast<double>(size);
    report(u"engine: %1 MB text out, beside the text itself"_s.arg(megabytes), more, u"× text"_s, u""_s);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const bool isShort = QCoreApplication::arguments().contains(u"--short"_s);
    VirtualSession::Options options;
    options.windowManager = false;
    VirtualSession session(options);
    if (!session.failure().isEmpty())
        giveUp(session.failure());
    const QByteArray display = session.display().toLatin1();
    idle(display, isShort ? 1s : 10s);
    latency(display, isShort ? 10 : 200);
    burst(display, isShort ? 50 : 1000);
    hungOwner(display);
    takeOver(display);
    largeText(session, isShort ? 5'000'000 : 50'000'000);
    return 0;
}
