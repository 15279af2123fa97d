#include "Kills.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <csignal>

using namespace Qt::StringLiterals;
using Clipboard::Testing::ForeignOwner;
using Clipboard::Testing::VirtualSession;

namespace Clipboard::Benchmarks {

namespace {

constexpr quint32 mostCopies = 40;     // before it is killed
constexpr quint32 largest = 200'000;   // bytes of a text
constexpr quint32 longestPause = 3000; // µs between two copies
constexpr qsizetype room = 400;        // entries, of the 500 that are kept: none is evicted
constexpr quint32 copiesPerSwitch = 6;
constexpr quint32 copiesPerPicture = 5;
constexpr int openingLimit = 10'000; // ms until a history that was locked is open

} // namespace

Kills::Kills(QString name, VirtualSession::Kind kind, Meanwhile meanwhile)
    : m_name(std::move(name))
    , m_bench(Filling{}, 1, kind)
    , m_meanwhile(meanwhile)
    , m_keyring(m_bench.session.environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s))
{
    m_keyring.setThere(true);
    m_keyring.moveToThread(&m_answering);
    m_answering.start();
}

Kills::~Kills()
{
    m_answering.quit();
    m_answering.wait();
}

void Kills::run(int times)
{
    qsizetype announced = 0;
    qsizetype lost = 0;
    int broken = 0;
    for (int round = 0; round < times; ++round) {
        const Told told = copyUntilKilled(round);
        broken += isHistoryWhole() ? 0 : 1;
        m_bench.restart();
        announced += told.size();
        lost += lostOf(told);
        if (listed().size() > room)
            m_bench.session.run(m_bench.tessaly.program(), {u"clear"_s});
    }
    const QStringList refused = QDir(m_bench.tessaly.dataFolder()).entryList({u"*.bad*"_s});
    const QString what = u"killed %1 times, on %2: "_s.arg(times).arg(m_name);
    row(what + u"entries told of before"_s, QString::number(announced), {}, {});
    row(what + u"of those lost"_s, QString::number(lost), {}, u"0"_s);
    row(what + u"files that are not whole"_s, QString::number(broken + refused.size()), {}, u"0"_s);
}

/// Of a sealed file only the program knows, which keeps it aside when it is not.
bool Kills::isHistoryWhole() const
{
    return m_meanwhile == Meanwhile::encryptionIsSwitched || !QFile::exists(m_bench.tessaly.historyFile()) ||
           m_bench.tessaly.history().has_value();
}

/// The entries that it told another program of.
Kills::Told Kills::copyUntilKilled(int round)
{
    QProcess& watcher = m_bench.session.start(m_bench.tessaly.program(), {u"watch"_s});
    if (!VirtualSession::waitUntil([&] { return watcher.canReadLine(); }))
        giveUp(u"Nobody tells of changes."_s);
    const std::unique_ptr<ForeignOwner> owner = m_bench.session.desktop().otherProgram();
    const int copies = static_cast<int>(1 + m_random.bounded(mostCopies));
    for (int i = 0; i < copies; ++i) {
        if (m_meanwhile == Meanwhile::encryptionIsSwitched && m_random.bounded(copiesPerSwitch) == 0)
            switchEncryption();
        copySomething(*owner, "copy " + QByteArray::number(i) + " of " + QByteArray::number(round));
        QThread::usleep(m_random.bounded(longestPause));
    }
    m_bench.tessaly.stop(SIGKILL);
    watcher.waitForFinished(VirtualSession::defaultTimeout); // with the program that it watches
    Told told;
    for (const QByteArray& line : watcher.readAllStandardOutput().split('\n')) {
        const QJsonObject change = QJsonDocument::fromJson(line).object();
        if (change.value("event"_L1) == "added"_L1)
            told.insert(change.value("id"_L1).toString(), change["entry"_L1]["type"_L1].toString());
    }
    m_bench.session.kill(watcher);
    return told;
}

void Kills::copySomething(ForeignOwner& owner, const QByteArray& text)
{
    const auto bytes = static_cast<qsizetype>(m_random.bounded(largest));
    if (m_meanwhile == Meanwhile::encryptionIsSwitched && m_random.bounded(copiesPerPicture) == 0)
        owner.copy({{"image/png", {.bytes = pictureOf(m_random.generate())}}});
    else
        owner.copyText(m_random.bounded(4) == 0 ? text.leftJustified(bytes, '.') : text);
}

void Kills::switchEncryption()
{
    const QString value = m_random.bounded(2) == 0 ? u"true"_s : u"false"_s;
    m_bench.session.run(m_bench.tessaly.program(), {u"config"_s, u"set"_s, u"encryptHistory"_s, value});
}

/// How many of them are not there, or without their picture, once the keyring has given the key away.
qsizetype Kills::lostOf(const Told& told)
{
    QSet<QString> missing;
    const auto areAllThere = [&] {
        missing = QSet(told.keyBegin(), told.keyEnd()) - listed();
        for (const auto& [id, type] : told.asKeyValueRange()) {
            if (type == "image"_L1 && !isPictureThere(id))
                missing.insert(id);
        }
        return missing.isEmpty();
    };
    static_cast<void>(VirtualSession::waitUntil(areAllThere, openingLimit));
    return missing.size();
}

bool Kills::isPictureThere(const QString& id)
{
    const auto result = m_bench.session.run(m_bench.tessaly.program(), {u"get"_s, id});
    return !QImage::fromData(result.output).isNull();
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

void switchRows(Effort effort)
{
    Kills(u"X11, encryption switched"_s, VirtualSession::Kind::x11, Kills::Meanwhile::encryptionIsSwitched)
        .run(effort.times(100, 5));
}

} // namespace Clipboard::Benchmarks
