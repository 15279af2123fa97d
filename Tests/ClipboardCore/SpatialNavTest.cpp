#include "Focus/SpatialNav.h"

#include <QTest>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

using Candidate = FocusCandidate<char>;
using Banded = BandedCandidate<char, FocusBand>;
using Key = std::optional<char>;

constexpr QRectF source(100, 100, 20, 20);

} // namespace

Q_DECLARE_METATYPE(FocusMove)

class SpatialNavTest final : public QObject
{
    Q_OBJECT
private slots:
    void measures_data();
    void measures();
    void nearest_data();
    void nearest();
    void nearestInBands_data();
    void nearestInBands();
};

void SpatialNavTest::measures_data()
{
    QTest::addColumn<FocusMove>("move");
    QTest::addColumn<QRectF>("target");
    QTest::addColumn<QList<double>>("expected"); // primary, gap, cross, overlap

    QTest::newRow("up") << FocusMove::up << QRectF(110, 40, 20, 30) << QList<double>{45, 30, 10, 1};
    QTest::newRow("down") << FocusMove::down << QRectF(110, 140, 20, 30) << QList<double>{35, 20, 10, 1};
    QTest::newRow("left") << FocusMove::left << QRectF(40, 110, 30, 20) << QList<double>{45, 30, 10, 1};
    QTest::newRow("right") << FocusMove::right << QRectF(140, 110, 30, 20) << QList<double>{35, 20, 10, 1};
    QTest::newRow("touching is no overlap")
        << FocusMove::down << QRectF(120, 140, 20, 20) << QList<double>{30, 20, 20, 0};
    QTest::newRow("overlapping along the move")
        << FocusMove::right << QRectF(115, 100, 30, 20) << QList<double>{10, -5, 0, 1};
}

void SpatialNavTest::measures()
{
    QFETCH(FocusMove, move);
    QFETCH(QRectF, target);
    QFETCH(QList<double>, expected);
    const auto seen = SpatialNav::metrics(source, target, move);
    QCOMPARE(QList<double>({seen.primary, seen.gap, seen.cross, seen.overlap ? 1.0 : 0.0}), expected);
}

void SpatialNavTest::nearest_data()
{
    QTest::addColumn<FocusMove>("move");
    QTest::addColumn<QList<Candidate>>("candidates");
    QTest::addColumn<Key>("expected");

    const auto at = [](char key, double x, double y) { return Candidate{key, QRectF(x, y, 20, 20)}; };
    QTest::newRow("half a point ahead") << FocusMove::down << QList{at('a', 100, 110.5)} << Key();
    QTest::newRow("a little more ahead") << FocusMove::down << QList{at('a', 100, 110.51)} << Key('a');
    QTest::newRow("first of equals") << FocusMove::right << QList{at('a', 150, 90), at('b', 150, 110)} << Key('a');
    QTest::newRow("aside costs more than away")
        << FocusMove::down << QList{at('a', 120, 130), at('b', 100, 175)} << Key('b');
    QTest::newRow("negative gap counts as none")
        << FocusMove::right << QList{at('a', 120, 104), at('b', 111, 104)} << Key('a');
}

void SpatialNavTest::nearest()
{
    QFETCH(FocusMove, move);
    QFETCH(QList<Candidate>, candidates);
    QFETCH(Key, expected);
    QCOMPARE(SpatialNav::nearest(source, move, candidates), expected);
}

void SpatialNavTest::nearestInBands_data()
{
    QTest::addColumn<FocusMove>("move");
    QTest::addColumn<QList<Banded>>("candidates");
    QTest::addColumn<Key>("expected");

    const auto in = [](FocusBand band) {
        return [band](char key, double x, double y) { return Banded{key, band, QRectF(x, y, 20, 20)}; };
    };
    const auto list = in(FocusBand::list);
    const auto header = in(FocusBand::header);
    const auto preview = in(FocusBand::preview);

    QTest::newRow("own band first, however far")
        << FocusMove::up << QList{header('h', 100, 70), list('l', 300, 0)} << Key('l');
    QTest::newRow("other band when the own has none ahead")
        << FocusMove::up << QList{list('l', 100, 150), header('a', 60, 50), header('b', 110, 40)} << Key('b');
    QTest::newRow("overlapping box before a nearer one")
        << FocusMove::right << QList{header('h', 130, 60), preview('p', 300, 60), preview('q', 300, 200)} << Key('p');
    QTest::newRow("first of equal boxes")
        << FocusMove::right << QList{preview('p', 200, 90), header('h', 200, 110)} << Key('p');
    QTest::newRow("chosen band without a member ahead is no answer")
        << FocusMove::right << QList{preview('p', 90, 100), preview('q', 115, 300), header('h', 0, 0)} << Key();
    QTest::newRow("box ahead, one member ahead")
        << FocusMove::right << QList{preview('p', 90, 300), preview('q', 200, 100)} << Key('q');
    QTest::newRow("empty rectangle keeps its place in the box")
        << FocusMove::right
        << QList{Banded{'p', FocusBand::preview, QRectF(200, 0, 0, 0)}, preview('q', 200, 300), header('h', 130, 150)}
        << Key('p');
}

void SpatialNavTest::nearestInBands()
{
    QFETCH(FocusMove, move);
    QFETCH(QList<Banded>, candidates);
    QFETCH(Key, expected);
    QCOMPARE(SpatialNav::nearest(source, FocusBand::list, move, candidates), expected);
}

QTEST_GUILESS_MAIN(SpatialNavTest)
#include "SpatialNavTest.moc"
