// The process that keeps the history is killed at any moment.

#include "History/HistoryCoding.h"
#include "HistoryFolder.h"

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <chrono>
#include <csignal>
#include <thread>

#include <unistd.h>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

/// What the child process does: records copies, small and large, until it is killed. It says the number of each that
/// would survive its end from here on.
int copyForEver(const QString& path)
{
    const auto store = openHistory(path, 500, 0.02);
    QRandomGenerator random(static_cast<quint32>(getpid()));
    for (int number = 0;; ++number) {
        const quint32 size = random.bounded(20) == 0 ? 600'000U : random.bounded(20'000U);
        const QString content = u"%1 %2 "_s.arg(getpid()).arg(number) + QString(qsizetype(size), u'x');
        static_cast<void>(store->add(entry(content, store->timeOfNewEntry())));
        store->saveAsync();
        if (sealingOfTests.seal && random.bounded(10) == 0) // on and off, and off before it is on
            store->setSealing({sealingOfTests.seal, random.bounded(2) == 0}, [](const auto& /*evicted*/) {});
        store->whenRecorded(QCoreApplication::instance(), [number] {
            printf("%d\n", number);
            fflush(stdout);
        });
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(4000)));
    }
}

} // namespace

class HistoryKillTest final : public QObject
{
    Q_OBJECT

    HistoryFolder m_folder;

private slots:
    void init() { m_folder.renew(); }
    void cleanup() { m_folder.checkOpenFiles(); }
    void losesNothingWhenKilled();
};

void HistoryKillTest::losesNothingWhenKilled()
{
    const int rounds = qEnvironmentVariable("TESSALY_KILL_ROUNDS", u"8"_s).toInt();
    for (int round = 0; round < rounds; ++round) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {u"--copy-for-ever"_s, m_folder.path()});
        QVERIFY(child.waitForReadyRead(30'000));
        QTest::qSleep(static_cast<int>(QRandomGenerator::global()->bounded(500))); // any moment
        QCOMPARE(::kill(static_cast<pid_t>(child.processId()), SIGKILL), 0);
        const QString pid = QString::number(child.processId());
        QVERIFY(child.waitForFinished(-1));

        int recorded = -1;
        while (child.canReadLine())
            recorded = child.readLine().trimmed().toInt();
        QFile file(m_folder.path());
        if (file.open(QIODevice::ReadOnly) && !isSealed(file.peek(sealedBeginning.size())))
            QVERIFY(HistoryCoding::decode(file.readAll()).has_value());
        int last = -1;
        const QList<ClipItem> items = m_folder.saved();
        for (const ClipItem& item : items) {
            const QString content = item.content.toString();
            if (content.startsWith(pid + u' '))
                last = std::max(last, content.section(u' ', 1, 1).toInt());
        }
        QVERIFY2(last >= recorded, qPrintable(u"%1 of %2"_s.arg(last).arg(recorded)));
    }
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == u"--copy-for-ever"_s)
        return copyForEver(arguments[2]);
    HistoryKillTest test;
    return QTest::qExec(&test, arguments);
}
#include "HistoryKillTest.moc"
