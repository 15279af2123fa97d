#include "Bench.h"
#include "HardEntries.h"
#include "Keyboard.h"
#include "MainThreadProbe.h"
#include "Mouse.h"
#include "ProcessFigures.h"
#include "ScreenProbe.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QThread>

#include <array>

using namespace Qt::StringLiterals;

namespace Clipboard::Benchmarks {

namespace {

constexpr quint32 downKey = 0xff54; // X key symbols, as X11/keysymdef.h numbers them
constexpr quint32 escapeKey = 0xff1b;
constexpr quint32 controlKey = 0xffe3;
constexpr unsigned long settle = 200; // ms; longer than any animation
constexpr unsigned long repeat = 33;  // ms; between the presses of a key that is held down
constexpr int entries = 500;
constexpr QPoint inList(120, 300); // logical pixels in the panel
const QString frame = u"≤ 16"_s;   // ms; sixty frames a second

/// Of each kind one after the other, every picture a file of its own in `pictures`.
QByteArray mixedHistory(const QString& pictures)
{
    QImage image(1600, 1000, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 255 / image.width(), y * 255 / image.height(), (x ^ y) & 0xFF));
    }
    const QString original = pictures + u"/picture.png"_s;
    if (!image.save(original))
        giveUp(u"The pictures could not be written."_s);
    QList<HardEntry> history;
    for (int i = 0; i < entries; ++i) {
        const QString number = QString::number(i);
        const QString picture = pictures + u'/' + number + u".png"_s;
        const std::array kinds = {
            HardEntry{{}, u"text"_s, u"{\"entry\": "_s + number + u", \"words\": [\"some\", \"more\"]}"_s},
            HardEntry{{}, u"image"_s, picture},
            HardEntry{{}, u"link"_s, u"https://example.org/entries/"_s + number + u"?utm_source=list"_s},
            HardEntry{{}, u"code"_s, u"int main()\n{\n    return "_s + number + u";\n}\n"_s.repeated(20)},
            HardEntry{{}, u"color"_s, u"#8FA"_s + number.rightJustified(3, u'0')},
            HardEntry{{}, u"text"_s, u"Entry "_s + number + u": some words that fill a line. "_s.repeated(300)},
            HardEntry{{}, u"file"_s, u"/usr/share/common-licenses/GPL-3"_s},
        };
        history.append(kinds.at(static_cast<std::size_t>(i) % kinds.size()));
        if (history.last().content == picture)
            QFile::copy(original, picture);
    }
    return historyOf(history);
}

/// The panel with a mixed history, on a screen of some scale.
class Frames final
{
public:
    Frames(const QString& pictures, int scale, Effort effort);

    void show();
    void showOnScreen();
    void search();
    void sheet();
    void move();
    void hold();
    void wheel();

private:
    /// Does it so often, and reports the time to the painted frame and the longest stall meanwhile: the worst frame.
    template <typename Act>
    void measure(const QString& what, const char* moment, int times, const Act& act, const QString& goal = frame);
    [[nodiscard]] QString named(const QString& what) const { return what + u", 500 mixed, %1×"_s.arg(m_scale); }

    int m_scale;
    Effort m_effort;
    Bench m_bench;
    Keyboard m_keyboard;
};

Frames::Frames(const QString& pictures, int scale, Effort effort)
    : m_scale(scale)
    , m_effort(effort)
    , m_bench(mixedHistory(pictures), scale)
    , m_keyboard(m_bench.session.display())
{
    m_bench.showPanel(m_keyboard);
    QThread::msleep(settle);
}

template <typename Act>
void Frames::measure(const QString& what, const char* moment, int times, const Act& act, const QString& goal)
{
    std::vector<double> values;
    MainThreadProbe probe(m_bench.tessaly.processID());
    for (int i = 0; i < times; ++i) {
        QThread::msleep(settle);
        m_bench.tessaly.moments().clear();
        const Clock::time_point begin = act(i);
        values.push_back(m_bench.until(moment, begin));
    }
    QThread::msleep(settle);
    const double worst = probe.longestStall();
    row(named(what), values, goal);
    row(named(what.section(u':', 0, 0) + u": longest main-thread stall"_s), worst, u"ms"_s, frame);
}

void Frames::show()
{
    std::vector<double> values;
    for (int i = 0; i < m_effort.times(15, 2); ++i) {
        m_bench.hidePanel(m_keyboard);
        values.push_back(m_bench.showPanel(m_keyboard));
    }
    row(named(u"show: hot key to first painted frame"_s), values, u"≤ 12"_s);
}

void Frames::showOnScreen()
{
    ScreenProbe probe(m_bench.screen.path(), m_bench.listOnScreen());
    std::vector<double> first;
    std::vector<double> complete;
    for (int i = 0; i < m_effort.times(15, 2); ++i) {
        m_bench.hidePanel(m_keyboard);
        QThread::msleep(settle);
        probe.start();
        const Clock::time_point pressed = Bench::pressHotKey(m_keyboard);
        const std::optional<ScreenProbe::Sight> sight = probe.finish();
        if (!sight)
            giveUp(u"The panel cannot be seen."_s);
        first.push_back(std::chrono::duration<double, std::milli>(sight->first - pressed).count());
        complete.push_back(std::chrono::duration<double, std::milli>(sight->complete - pressed).count());
    }
    row(named(u"show: hot key to its first pixel on the screen"_s), first, {});
    row(named(u"show: hot key to the whole list on the screen"_s), complete, u"≤ 12"_s);
}

void Frames::search()
{
    const QByteArray query = "entry 4";
    measure(u"search: key to painted list"_s, "list-painted", static_cast<int>(query.size()), [&](int i) {
        return m_keyboard.press({static_cast<quint32>(query.at(i))}); // ASCII codes are key symbols
    });
    m_keyboard.press({escapeKey});
    QThread::msleep(settle);
}

void Frames::sheet()
{
    measure(u"sheet: Ctrl+K to first painted frame"_s, "sheet-painted", m_effort.times(15, 2), [this](int i) {
        if (i > 0) {
            m_keyboard.press({escapeKey});
            QThread::msleep(settle);
            m_keyboard.press({downKey});
            QThread::msleep(settle);
            m_bench.tessaly.moments().clear();
        }
        return m_keyboard.press({controlKey, 'k'});
    });
    m_keyboard.press({escapeKey});
    QThread::msleep(settle);
}

void Frames::move()
{
    measure(
        u"selection move: arrow key to painted frame"_s, "list-painted", m_effort.times(60, 3),
        [this](int) { return m_keyboard.press({downKey}); }, u"≤ 8"_s);
}

/// Down to the end of the list, as fast as a held key repeats.
void Frames::hold()
{
    const qint64 process = m_bench.tessaly.processID();
    const int steps = m_effort.times(entries, 5);
    const double before = ProcessFigures::processorTime(process);
    MainThreadProbe probe(process);
    for (int i = 0; i < steps; ++i) {
        m_keyboard.press({downKey});
        QThread::msleep(repeat);
    }
    QThread::msleep(settle);
    const double worst = probe.longestStall();
    row(named(u"scroll: held arrow key, longest main-thread stall"_s), worst, u"ms"_s, frame);
    row(named(u"scroll: held arrow key, processor time a step"_s),
        (ProcessFigures::processorTime(process) - before) / steps, u"ms"_s, {});
}

void Frames::wheel()
{
    // A panel that is called up again stands at the top of its list.
    m_bench.hidePanel(m_keyboard);
    m_bench.showPanel(m_keyboard);
    const std::optional<Testing::RunningTessaly::Window> panel = m_bench.tessaly.panel();
    if (!panel)
        giveUp(u"The panel went away."_s);
    Mouse mouse(m_bench.session.display());
    mouse.moveTo(panel->geometry.topLeft() + inList * m_scale);
    measure(u"wheel: notch to painted frame"_s, "list-painted", m_effort.times(60, 3),
            [&mouse](int) { return mouse.turnDown(); });
}

} // namespace

void frameRows(Effort effort)
{
    const QTemporaryDir pictures;
    for (int scale = 1; scale <= effort.times(2, 1); ++scale) {
        Frames frames(pictures.path(), scale, effort);
        frames.show();
        frames.showOnScreen();
        frames.search();
        frames.sheet();
        frames.move();
        frames.hold();
        frames.wheel();
    }
}

} // namespace Clipboard::Benchmarks
