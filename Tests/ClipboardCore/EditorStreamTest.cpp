#include "EditorStream.h"

#include <QTest>

#include <algorithm>
#include <random>
#include <vector>

class EditorStreamTest final : public QObject
{
    Q_OBJECT
private slots:
    void holdsWhateverHappens();
};

void EditorStreamTest::holdsWhateverHappens()
{
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        std::mt19937 random(seed);
        std::vector<std::uint8_t> bytes(random() % 2000);
        std::ranges::generate(bytes, [&random] { return static_cast<std::uint8_t>(random()); });
        const char* broken = EditorStream::firstBroken(bytes);
        QVERIFY2(!broken, qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(QLatin1StringView(broken))));
    }
}

QTEST_APPLESS_MAIN(EditorStreamTest)
#include "EditorStreamTest.moc"
