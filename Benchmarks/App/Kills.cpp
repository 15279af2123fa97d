#include "Kills.h"

#include "ForeignOwner.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QThread>

#include <csignal>

using namespace Qt::StringLiterals;
using Clipboard::Testing::VirtualSession;

namespace Clipboard::Benchmarks {

namespace {

constexpr quint32 mostCopies = 40;     // before it is killed
constexpr quint32 largest = 200'000;   // bytes of a text
constexpr quint32 longestPause = 3000; // µs between two copies
constexpr qsizetype room = 400;        // entries, of the 500 that are kept: none is evicted

} // namespace

Kills::Kills(QString name, VirtualSession::Kind kind)
    : m_name(std::move(name))
    , m_bench(Filling{}, 1, kind)
{
}

void Kills::run(int times)
{
    qsizetype announced = 0;
    qsizetype lost = 0;
    int broken = 0;
    for (int round = 0; round < times; ++round) {
        const QSet<QString> told = copyUntilKilled(round);
        if (QFile::exists(m_bench.tessaly.historyFile()) && !m_bench.tessaly.history())
            ++broken;
        m_bench.restart();
        const QSet<QString> present = listed();
        announced += told.size();
        lost += (told - present).size();
        if (present.size() > room)
            m_bench.session.run(m_bench.tessaly.program(), {u"clear"_s});
    }
    const QString what = u"killed %1 times, on %2: "_s.arg(times).arg(m_name);
    row(what + u"entries told of before"_s, QString::number(announced), {}, {});
    row(what + u"of those lost"_s, QString::number(lost), {}, u"0"_s);
    row(what + u"files that are not whole"_s, QString::number(broken), {}, u"0"_s);
}

/// The ids of the entries that it told another program of.
QSet<QString> Kills::copyUntilKilled(int round)
{
    QProcess& watcher = m_bench.session.start(m_bench.tessaly.program(), {u"watch"_s});
    if (!VirtualSession::waitUntil([&] { return watcher.canReadLine(); }))
        giveUp(u"Nobody tells of changes."_s);
    const std::unique_ptr<Testing::ForeignOwner> owner = m_bench.session.desktop().otherProgram();
    const int copies = static_cast<int>(1 + m_random.bounded(mostCopies));
    for (int i = 0; i < copies; ++i) {
        const QByteArray text = "copy " + QByteArray::number(i) + " of " + QByteArray::number(round);
        const auto bytes = static_cast<qsizetype>(m_random.bounded(largest));
        owner->copyText(m_random.bounded(4) == 0 ? text.leftJustified(bytes, '.') : text);
        QThread::usleep(m_random.bounded(longestPause));
    }
    m_bench.tessaly.stop(SIGKILL);
    watcher.waitForFinished(VirtualSession::defaultTimeout); // with the program that it watches
    QSet<QString> told;
    for (const QByteArray& line : watcher.readAllStandardOutput().split('\n')) {
        const QJsonObject change = QJsonDocument::fromJson(line).object();
        if (change.value("event"_L1) == "added"_L1)
            told.insert(change.value("id"_L1).toString());
    }
    m_bench.session.kill(watcher);
    return told;
}

QSet<QString> Kills::listed()
{
    const auto result = m_bench.session.run(m_bench.tessaly.program(), {u"list"_s, u"--json"_s});
    const QJsonDocument entries = QJsonDocument::fromJson(result.output);
    if (result.exitCode != 0 || !entries.isArray())
        giveUp(u"The entries could not be listed."_s);
    QSet<QString> ids;
    for (const auto& entry : entries.array())
        ids.insert(entry.toObject().value("id"_L1).toString());
    return ids;
}

void killRows(Effort effort)
{
    Kills(u"X11"_s, VirtualSession::Kind::x11).run(effort.times(500, 5));
    Kills(u"sway"_s, VirtualSession::Kind::sway).run(effort.times(500, 5));
}

} // namespace Clipboard::Benchmarks
