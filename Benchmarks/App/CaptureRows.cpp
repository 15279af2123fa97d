#include "Bench.h"
#include "ForeignClient.h"
#include "Keyboard.h"
#include "MainThreadProbe.h"
#include "ProcessFigures.h"

#include <QBuffer>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRandomGenerator>
#include <QThread>

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;
using Clipboard::Testing::ForeignClient;
using Clipboard::Testing::VirtualSession;

namespace Clipboard::Benchmarks {

namespace {

void captureRow(const QString& what, Filling filling, int times)
{
    Bench bench(filling);
    ForeignClient owner(bench.session);
    std::vector<double> values;
    for (int i = 0; i < times; ++i) {
        bench.tessaly.moments().clear();
        const Clock::time_point begin = Clock::now();
        owner.copyText("copy number " + QByteArray::number(i));
        values.push_back(bench.until("captured", begin));
    }
    row(what, median(values), u"ms"_s, u"≤ 1.5"_s);
}

/// Whether the file or the journal beside it holds that text.
bool isOnDisk(const Bench& bench, const QByteArray& text)
{
    const QString file = bench.tessaly.historyFile();
    const QString journal = QFileInfo(file).path() + u"/history.journal"_s;
    return std::ranges::any_of(QStringList{journal, file}, [&text](const QString& path) {
        QFile content(path);
        return content.open(QFile::ReadOnly) && content.readAll().contains(text);
    });
}

void writingRow(int copies)
{
    Bench bench({.entries = 500, .bytes = 20'000});
    ForeignClient owner(bench.session);
    const qint64 before = ProcessFigures::written(bench.tessaly.processID());
    for (int i = 0; i < copies; ++i) {
        owner.copyText("burst " + QByteArray::number(i));
        (void)bench.until("captured", Clock::now());
    }
    const QDeadlineTimer limit(std::chrono::seconds(20));
    while (!isOnDisk(bench, "burst " + QByteArray::number(copies - 1))) {
        if (limit.hasExpired()) {
            giveUp(u"The burst was not saved."_s);
        }
        QThread::msleep(20);
    }
    const double files = static_cast<double>(ProcessFigures::written(bench.tessaly.processID()) - before) /
                         static_cast<double>(QFileInfo(bench.tessaly.historyFile()).size());
    row(u"writing: %1 copies in a burst, 500 of 20 KB"_s.arg(copies), files, u"× the file"_s, u"≤ 1"_s);
}

void burstRow(int copies)
{
    constexpr auto distance = std::chrono::milliseconds(2);
    Bench bench;
    ForeignClient owner(bench.session);
    Clock::time_point next = Clock::now();
    for (int i = 0; i < copies; ++i) {
        owner.copyText("burst " + QByteArray::number(i));
        next += distance;
        std::this_thread::sleep_until(next);
    }
    QThread::msleep(500);
    row(u"burst: of %1 copies 2 ms apart, recorded"_s.arg(copies),
        QString::number(bench.tessaly.moments().count("captured")), u""_s, QString::number(copies));
}

void hungOwnerRows(int times)
{
    Bench bench({.entries = 500, .bytes = 20'000});
    Keyboard keyboard(bench.session.display());
    ForeignClient other(bench.session);
    bench.showPanel(keyboard);
    bench.hidePanel(keyboard);

    std::vector<double> shows;
    std::vector<double> copies;
    MainThreadProbe probe(bench.tessaly.processID());
    for (int i = 0; i < times; ++i) {
        ForeignClient hung(bench.session);
        hung.copyAndHang();
        shows.push_back(bench.showPanel(keyboard));
        bench.tessaly.moments().clear();
        const Clock::time_point begin = Clock::now();
        other.copyText("after the hung one " + QByteArray::number(i));
        copies.push_back(bench.until("captured", begin));
        bench.hidePanel(keyboard);
    }
    row(u"hung owner: show meanwhile"_s, median(shows), u"ms"_s, u"≤ 12"_s);
    row(u"hung owner: next copy recorded after"_s, median(copies), u"ms"_s, u"≤ 3"_s);
    row(u"hung owner: longest main-thread stall"_s, probe.longestStall(), u"ms"_s, u"≤ 16"_s);
}

/// Has xclip copy the file, and measures until it is recorded; the panel is called up in the meantime.
struct LargeCopy
{
    double recorded;
    double show;
    double peak;
    double stall;
};

LargeCopy copyLarge(const QByteArray& content, const QString& target)
{
    Bench bench;
    Keyboard keyboard(bench.session.display());
    bench.showPanel(keyboard);
    bench.hidePanel(keyboard);
    const QString path = bench.session.homePath(u"large"_s);
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(content) != content.size()) {
        giveUp(u"The large file could not be written."_s);
    }
    file.close();

    QThread::msleep(200); // the hiding is over
    bench.tessaly.moments().clear();
    const qint64 process = bench.tessaly.processID();
    ProcessFigures::resetPeak(process);
    const double before = ProcessFigures::peakMemory(process);
    MainThreadProbe probe(bench.tessaly.processID());
    bench.session.start(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, target, u"-i"_s, path});
    while (bench.session.selectionOwner("CLIPBOARD") == 0) {
        std::this_thread::yield();
    }
    const Clock::time_point begin = Clock::now();
    LargeCopy result{};
    result.show = bench.until("panel-painted", Bench::pressHotKey(keyboard));
    result.recorded = bench.until("captured", begin);
    result.stall = probe.longestStall();
    QThread::sleep(2); // the save belongs to the peak
    result.peak = ProcessFigures::peakMemory(process) - before;
    return result;
}

void largeTextRows(Effort effort)
{
    const qsizetype size = effort.isShort ? 5'000'000 : 50'000'000;
    QByteArray text;
    while (text.size() < size) {
        text += QByteArray::number(text.size()) + " the quick brown fox jumps over the lazy dog\n";
    }
    const LargeCopy copy = copyLarge(text, u"UTF8_STRING"_s);
    const QString what = u"large text, %1 MB: "_s.arg(size / 1'000'000);
    row(what + u"recorded after"_s, copy.recorded, u"ms"_s, u"≤ 300"_s);
    row(what + u"peak memory above idle"_s, copy.peak * 1024 * 1024 / static_cast<double>(text.size()), u"× the text"_s,
        u"≤ 4"_s);
    row(what + u"show meanwhile"_s, copy.show, u"ms"_s, u"≤ 16"_s);
    row(what + u"longest main-thread stall"_s, copy.stall, u"ms"_s, u"≤ 16"_s);
}

/// Between a photograph and a screenshot: smooth areas with some noise in them. Of 16 bits, with the noise of a camera.
QByteArray largePicture(QSize size, QImage::Format format)
{
    QImage image(size, format);
    const bool isDeep = image.depth() > 32;
    QRandomGenerator random(1);
    const auto channel = [&random](int value, int noise) {
        return static_cast<quint16>(std::min(value + random.bounded(noise), 0xffff));
    };
    for (int y = 0; y < image.height(); ++y) {
        const int noise = isDeep ? 0x4000 : 1;
        const int redNoise = !isDeep && y % 8 == 0 ? 0x800 : noise;
        for (int x = 0; x < image.width(); ++x) {
            const auto color = QColor::fromRgba64(channel(x * 0xf700 / image.width(), redNoise),
                                                  channel(y * 0xf700 / image.height(), noise), channel(0x8000, noise));
            image.setPixelColor(x, y, color);
        }
    }
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QBuffer::WriteOnly) || !image.save(&buffer, "png"))
        giveUp(u"The large picture could not be made."_s);
    return png;
}

void largePictureRows(Effort effort)
{
    const QSize size = effort.isShort ? QSize(800, 600) : QSize(3840, 2160);
    const std::pair<QString, QImage::Format> pictures[] = {{u"large picture"_s, QImage::Format_RGB32},
                                                           {u"large picture of 16 bits"_s, QImage::Format_RGBX64}};
    for (const auto& [name, format] : pictures) {
        const LargeCopy copy = copyLarge(largePicture(size, format), u"image/png"_s);
        const QString what = u"%1, %2 × %3: "_s.arg(name).arg(size.width()).arg(size.height());
        row(what + u"recorded after"_s, copy.recorded, u"ms"_s, u"≤ 300"_s);
        row(what + u"peak memory above idle"_s, copy.peak, u"MB"_s, u"≤ 120"_s);
        row(what + u"longest main-thread stall"_s, copy.stall, u"ms"_s, u"≤ 16"_s);
    }
}

} // namespace

void captureRows(Effort effort)
{
    captureRow(u"capture: fresh"_s, {}, effort.times(300, 10));
    captureRow(u"capture: 500 of 20 KB"_s, {.entries = 500, .bytes = 20'000}, effort.times(300, 10));
    writingRow(effort.times(100, 10));
    burstRow(effort.times(1000, 50));
    hungOwnerRows(effort.times(20, 2));
    largeTextRows(effort);
    largePictureRows(effort);
}

} // namespace Clipboard::Benchmarks
