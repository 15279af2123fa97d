#include "DataControlEngine.h"

#include "Rows.h"
#include "SwayCompositor.h"
#include "VirtualSession.h"
#include "WaylandOwner.h"

#include <QTest>

#include <mutex>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

using Manner = ForeignOwner::Answer::Manner;

/// What the engine makes of the ends that a pipe can have.
class DataControlReadingTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void tellsTheEndOfATextFromThatOfItsOwner();

private:
    void reads(const char* name, const ForeignOwner::Answer& answer, const QByteArray& text);

    std::unique_ptr<VirtualSession> m_session;
};

void DataControlReadingTest::initTestCase()
{
    if (const QString missing = SwayCompositor::missing(); !missing.isEmpty())
        QSKIP(qPrintable(missing));
    m_session = std::make_unique<VirtualSession>(VirtualSession::Options{.kind = VirtualSession::Kind::sway});
    QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
}

void DataControlReadingTest::reads(const char* /*name*/, const ForeignOwner::Answer& answer, const QByteArray& text)
{
    std::mutex mutex;
    QByteArrayList texts;
    Wayland::DataControlEngine::Options options;
    const QProcessEnvironment& environment = m_session->environment();
    options.display =
        (environment.value(u"XDG_RUNTIME_DIR"_s) + u'/' + environment.value(u"WAYLAND_DISPLAY"_s)).toLocal8Bit();
    options.onChange = [&](const SelectionSnapshot& snapshot) {
        const std::scoped_lock lock(mutex);
        if (!snapshot.isInitial)
            texts.append(snapshot.content.text.value_or("nothing"));
    };
    const auto engine = Wayland::DataControlEngine::start(options);
    QVERIFY(engine);
    WaylandOwner owner(*m_session);
    owner.copy({{"text/plain;charset=utf-8", answer}});
    QVERIFY(VirtualSession::waitUntil([&] {
        const std::scoped_lock lock(mutex);
        return !texts.isEmpty();
    }));
    engine->settled().wait();
    engine->stop();
    QCOMPARE(texts, QByteArrayList{text});
}

void DataControlReadingTest::tellsTheEndOfATextFromThatOfItsOwner()
{
    const QByteArray large(3'000'000, 'x');
    checkRows(
        this, &DataControlReadingTest::reads,
        {{"at once", {.bytes = large}, large},
         {"in pieces", {.bytes = large, .manner = Manner::InPieces}, large},
         {"its owner dies", {.bytes = large, .manner = Manner::DieInTheMiddle}, "nothing"},
         {"its owner dies early", {.bytes = large, .manner = Manner::DieInTheMiddle, .pieceBytes = 5000}, "nothing"}});
}

QTEST_GUILESS_MAIN(DataControlReadingTest)
#include "DataControlReadingTest.moc"
