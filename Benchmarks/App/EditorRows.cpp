#include "Bench.h"
#include "HardEntries.h"
#include "Keyboard.h"
#include "MainThreadProbe.h"
#include "Mouse.h"
#include "ProcessFigures.h"

#include <QImage>
#include <QTemporaryDir>
#include <QThread>

using namespace Qt::StringLiterals;

namespace Clipboard::Benchmarks {

namespace {

constexpr quint32 escapeKey = 0xff1b; // X key symbols, as X11/keysymdef.h numbers them
constexpr quint32 controlKey = 0xffe3;
constexpr unsigned long settle = 1000; // ms; the picture's copies are made, or what was open has been given back
constexpr unsigned long frame = 33;    // ms; between two moves of the mouse

QByteArray historyOfOnePicture(const QString& path)
{
    QImage image(3840, 2160, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb((x / 4) ^ (y / 4), x / 15, y / 9));
    }
    if (!image.save(path))
        giveUp(u"The large picture could not be made."_s);
    return historyOf({{{}, u"image"_s, path}});
}

/// The editor with a large picture.
class Editing final
{
public:
    explicit Editing(const QString& picture)
        : m_bench(historyOfOnePicture(picture))
        , m_keyboard(m_bench.session.display())
    {
        m_bench.showPanel(m_keyboard);
        QThread::msleep(settle);
    }

    [[nodiscard]] qint64 process() const { return m_bench.tessaly.processID(); }
    [[nodiscard]] double memory() const { return ProcessFigures::proportionalMemory(process()); }

    /// From the panel. Milliseconds from the key to the first frame with the picture.
    double open()
    {
        m_bench.tessaly.moments().clear();
        const double time = m_bench.until("canvas-painted", m_keyboard.press({controlKey, 'e'}));
        QThread::msleep(settle);
        return time;
    }

    /// Back to the panel.
    void close()
    {
        m_keyboard.press({escapeKey});
        if (!m_bench.tessaly.waitForPanel(true))
            giveUp(u"The editor did not close."_s);
        QThread::msleep(settle);
    }

    /// The frames of drawing an arrow across the picture, from the mouse to the screen.
    std::vector<double> draw(int frames)
    {
        const QRect window = m_bench.tessaly.editor()->geometry;
        const QPoint begin = window.center() - QPoint(window.width(), window.height()) / 4;
        Mouse mouse(m_bench.session.display());
        mouse.moveTo(begin);
        mouse.pressLeft();
        std::vector<double> values;
        for (int i = 1; i <= frames; ++i) {
            QThread::msleep(frame);
            m_bench.tessaly.moments().clear();
            const QPoint place = begin + QPoint(window.width(), window.height()) / 2 * i / frames;
            values.push_back(m_bench.until("canvas-painted", mouse.moveTo(place)));
        }
        mouse.releaseLeft();
        QThread::msleep(frame);
        return values;
    }

    void undo() { m_keyboard.press({controlKey, 'z'}); }

private:
    Bench m_bench;
    Keyboard m_keyboard;
};

} // namespace

void editorRows(Effort effort)
{
    const QTemporaryDir pictures;
    Editing editing(pictures.filePath(u"large.png"_s));
    const double before = editing.memory();
    MainThreadProbe opening(editing.process());
    std::vector<double> times{editing.open()};
    row(u"editor: longest main-thread stall while opening 3840 × 2160"_s, opening.longestStall(), u"ms"_s, u"≤ 16"_s);
    const double open = editing.memory();
    MainThreadProbe drawing(editing.process());
    row(u"editor: mouse to painted frame of a drag on 3840 × 2160"_s, editing.draw(effort.times(60, 5)), u"≤ 16"_s);
    row(u"editor: longest main-thread stall during the drag"_s, drawing.longestStall(), u"ms"_s, u"≤ 16"_s);
    editing.undo();
    for (int i = 1; i < effort.times(7, 2); ++i) {
        editing.close();
        times.push_back(editing.open());
    }
    row(u"editor: Ctrl+E to first painted frame of 3840 × 2160"_s, times, {});
    editing.close();
    row(u"editor: memory while open, above before"_s, open - before, u"MB PSS"_s, {});
    row(u"editor: memory after closing, above before"_s, editing.memory() - before, u"MB PSS"_s, {});
}

} // namespace Clipboard::Benchmarks
