#include "Focus/SpatialNav.h"

#include <QTest>

using namespace ClipboardCore;

namespace {

using Candidates = QList<FocusCandidate<char>>;
using Banded = QList<BandedCandidate<char, FocusBand>>;

constexpr QRectF source(100, 100, 20, 20);

/// primary, gap, cross, overlap
QList<double> measured(FocusMove move, const QRectF& target)
{
    const auto seen = SpatialNav::metrics(source, target, move);
    return {seen.primary, seen.gap, seen.cross, seen.overlap ? 1.0 : 0.0};
}

/// '-' for none.
char nearest(FocusMove move, const Candidates& candidates)
{
    return SpatialNav::nearest(source, move, candidates).value_or('-');
}

char nearest(FocusMove move, const Banded& candidates)
{
    return SpatialNav::nearest(source, FocusBand::list, move, candidates).value_or('-');
}

QRectF at(double x, double y)
{
    return {x, y, 20, 20};
}

} // namespace

class SpatialNavTest final : public QObject
{
    Q_OBJECT
private slots:
    void measures();
    void findsTheNearest();
    void prefersItsOwnBand();
    void choosesABandByItsBox();
};

void SpatialNavTest::measures()
{
    QCOMPARE(measured(FocusMove::down, {110, 140, 20, 30}), QList<double>({35, 20, 10, 1}));
    QCOMPARE(measured(FocusMove::left, {40, 110, 30, 20}), QList<double>({45, 30, 10, 1}));
    QCOMPARE(measured(FocusMove::down, {120, 140, 20, 20}), QList<double>({30, 20, 20, 0})); // they only touch
    QCOMPARE(measured(FocusMove::down, {80, 140, 20, 20}), QList<double>({30, 20, 20, 0}));
    QCOMPARE(measured(FocusMove::right, {115, 100, 30, 20}), QList<double>({10, -5, 0, 1}));
}

void SpatialNavTest::findsTheNearest()
{
    QCOMPARE(nearest(FocusMove::down, Candidates{{'a', at(100, 110.5)}}), '-');
    QCOMPARE(nearest(FocusMove::down, Candidates{{'a', at(100, 110.51)}}), 'a');
    QCOMPARE(nearest(FocusMove::right, Candidates{{'a', at(150, 90)}, {'b', at(150, 110)}}),
             'a'); // of equals the first
    QCOMPARE(nearest(FocusMove::down, Candidates{{'a', at(120, 130)}, {'b', at(100, 175)}}), 'b'); // aside costs more
    // A negative gap counts as none.
    QCOMPARE(nearest(FocusMove::right, Candidates{{'a', at(120, 104)}, {'b', at(111, 104)}}), 'a');
}

void SpatialNavTest::prefersItsOwnBand()
{
    const auto header = FocusBand::header;
    QCOMPARE(nearest(FocusMove::up, Banded{{'h', header, at(100, 70)}, {'l', FocusBand::list, at(300, 0)}}), 'l');
    QCOMPARE(
        nearest(FocusMove::up,
                Banded{{'l', FocusBand::list, at(100, 150)}, {'a', header, at(60, 50)}, {'b', header, at(110, 40)}}),
        'b'); // its own has none ahead
}

void SpatialNavTest::choosesABandByItsBox()
{
    const auto header = FocusBand::header;
    const auto preview = FocusBand::preview;
    const auto right = [](const Banded& candidates) { return nearest(FocusMove::right, candidates); };
    // One that overlaps comes before one that is nearer,
    QCOMPARE(right({{'h', header, at(130, 60)}, {'p', preview, at(300, 60)}, {'q', preview, at(300, 200)}}), 'p');
    // even when none of its members is ahead;
    QCOMPARE(right({{'p', preview, at(90, 100)}, {'q', preview, at(115, 300)}, {'h', header, at(0, 0)}}), '-');
    QCOMPARE(right({{'p', preview, at(90, 300)}, {'q', preview, at(200, 100)}}), 'q');
    // and an empty rectangle keeps its place in the box.
    QCOMPARE(right({{'p', preview, {200, 0, 0, 0}}, {'q', preview, at(200, 300)}, {'h', header, at(130, 150)}}), 'p');
}

QTEST_GUILESS_MAIN(SpatialNavTest)
#include "SpatialNavTest.moc"
