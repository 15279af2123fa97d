#include "Bench.h"
#include "ForeignClient.h"

#include <QDir>
#include <QFile>
#include <QThread>

#include <csignal>

using namespace Qt::StringLiterals;
using Clipboard::Testing::ForeignClient;
using Clipboard::Testing::VirtualSession;

namespace Clipboard::Benchmarks {

namespace {

void ownerGoneRow(const QString& what, unsigned long delay, int times, const QString& goal)
{
    Bench bench;
    int kept = 0;
    for (int i = 0; i < times; ++i) {
        const QByteArray text = "left behind " + QByteArray::number(i);
        {
            ForeignClient owner(bench.session);
            owner.copyText(text);
            QThread::msleep(delay);
        }
        QThread::msleep(100);
        const auto pasted = bench.session.run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s});
        kept += pasted.output == text ? 1 : 0;
    }
    row(what, u"%1 of %2"_s.arg(kept).arg(times), u""_s, goal);
}

void killedRow()
{
    constexpr int copies = 10;
    Bench bench;
    ForeignClient owner(bench.session);
    for (int i = 0; i < copies; ++i) {
        owner.copyText("before the end " + QByteArray::number(i));
        (void)bench.until("captured", Clock::now());
    }
    bench.tessaly.stop(SIGKILL);
    bench.restart();
    owner.copyText("after the end");
    (void)bench.tessaly.waitForNewest(u"after the end"_s);
    const auto entries = bench.tessaly.history();
    row(u"killed: of 10 copies, there after kill -9 at once and a restart"_s,
        QString::number(entries ? entries->size() - 1 : 0), u""_s, u"10"_s);
}

/// Needs a small file system of its own, which only root can mount.
void diskFullRows()
{
    const QString earlier = u"disk full: earlier entries kept"_s;
    const QString later = u"disk full: new ones saved once there is room"_s;
    Bench bench;
    bench.tessaly.stop(SIGTERM);
    const QString folder = bench.tessaly.dataFolder();
    const auto mounted = bench.session.run(
        u"mount"_s, {u"-t"_s, u"tmpfs"_s, u"-o"_s, u"size=256k,mode=700"_s, u"tessaly-bench"_s, folder});
    if (mounted.exitCode != 0) {
        row(earlier, u"needs root"_s, u""_s, u"yes"_s);
        row(later, u"needs root"_s, u""_s, u"yes"_s);
        return;
    }
    bench.restart();
    ForeignClient owner(bench.session);
    owner.copyText("earlier");
    bool kept = bench.tessaly.waitForNewest(u"earlier"_s);

    QFile filler(folder + u"/filler"_s);
    if (filler.open(QFile::WriteOnly | QFile::Unbuffered)) {
        while (filler.write(QByteArray(4096, 'x')) > 0) {
        }
        filler.close();
    }
    bench.tessaly.moments().clear();
    owner.copyText("while full " + QByteArray(20'000, 'x'));
    (void)bench.until("captured", Clock::now());
    QThread::sleep(2); // the save is tried in this time
    kept = kept && bench.tessaly.history() && bench.tessaly.history()->size() == 1;
    row(earlier, kept ? u"yes"_s : u"no"_s, u""_s, u"yes"_s);

    filler.remove();
    owner.copyText("room again");
    const bool saved = bench.tessaly.waitForHistory([](const auto& entries) { return entries.size() == 3; });
    row(later, saved ? u"yes"_s : u"no"_s, u""_s, u"yes"_s);
    bench.tessaly.stop(SIGTERM);
    bench.session.run(u"umount"_s, {folder});
}

} // namespace

void safetyRows(Effort effort)
{
    ownerGoneRow(u"owner gone: content kept when its program exits at once"_s, 0, effort.times(20, 2),
                 u"yes, when its targets could be read"_s);
    ownerGoneRow(u"owner gone: 50 ms later"_s, 50, effort.times(20, 2), u"yes"_s);
    killedRow();
    diskFullRows();
}

} // namespace Clipboard::Benchmarks
