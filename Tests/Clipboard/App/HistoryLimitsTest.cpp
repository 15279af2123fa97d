#include "HistoryLimits.h"

#include "History/JSONHistoryStore.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Qt::StringLiterals;

class HistoryLimitsTest final : public QObject
{
    Q_OBJECT
private slots:
    void waitsForAClockThatWasSet();
};

/// An entry of the first day beside a limit of two, and what is left of it after each of these hours, when the system's
/// clock says so much more than has passed.
void HistoryLimitsTest::waitsForAClockThatWasSet()
{
    constexpr double hour = 3600;
    constexpr double year = 365 * 24 * hour;
    const QTemporaryDir folder;
    JSONHistoryStore store(folder.filePath(u"history.json"_s), 500, hour);
    double passed = 0;
    double ahead = 0;
    HistoryLimits limits(store, 500, [](const auto& /*evicted*/) {}, nullptr,
                         {[&] { return passed + ahead; }, [&] { return passed; }});
    QVERIFY(store.add({QUuid::createUuid(), ClipType::text, u"kept"_s, {}, {}, 0, false}).isEmpty());
    limits.set(500, 2);
    const auto isLeft = [&](double hours, double clock) {
        passed = hours * hour;
        ahead = clock;
        limits.enforceDays();
        return !store.items().isEmpty();
    };
    QVERIFY(isLeft(1, 0));
    QVERIFY(isLeft(2, 74 * year));
    QVERIFY(isLeft(2.9, 74 * year)); // the panel was opened
    QVERIFY(isLeft(3, -year));       // and back
    QVERIFY(isLeft(5, 0));
    QVERIFY(isLeft(47, 30)); // nobody set it
    QVERIFY(!isLeft(49, 0));

    QVERIFY(store.add({QUuid::createUuid(), ClipType::text, u"gone"_s, {}, {}, 49 * hour, false}).isEmpty());
    QVERIFY(isLeft(50, year));
    QVERIFY(!isLeft(51, year)); // it holds
}

QTEST_GUILESS_MAIN(HistoryLimitsTest)
#include "HistoryLimitsTest.moc"
