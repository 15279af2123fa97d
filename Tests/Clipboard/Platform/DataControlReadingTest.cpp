#include "DataControlEngine.h"

#include "Rows.h"
#include "SwayCompositor.h"
#include "VirtualSession.h"
#include "WaylandOwner.h"

#include <QTest>

#include <csignal>
#include <future>
#include <mutex>

#include <fcntl.h>
#include <unistd.h>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Manner = ForeignOwner::Answer::Manner;

using Answer = ForeignOwner::Answer;
using Answers = QHash<QByteArray, Answer>;

namespace {

const QByteArray asText = "text/plain;charset=utf-8";
constexpr const char* mark = "x-secret/mark";

/// Beside those of other types more than an engine looks at, which come after the text and before the mark.
Answers amongMany(Answers answers)
{
    for (uint32_t i = 0; i < 2 * maxTargets; ++i)
        answers.insert("u/" + QByteArray::number(i), {});
    return answers;
}

} // namespace

/// What the engine makes of the owners that it meets on Wayland, and of the ends that a pipe can have.
class DataControlReadingTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void tellsTheEndOfATextFromThatOfItsOwner();
    void badOwners();
    void keepsUpWithAnOwnerThatChanges();
    void twoManagersComeToRest();
    void readersThatMakeItWait();
    void compositorDiesInTheMiddle();

private:
    /// An engine, and what it has published, as the text of each change.
    struct Watch
    {
        [[nodiscard]] QByteArrayList texts() const
        {
            const std::scoped_lock lock(mutex);
            return all;
        }
        [[nodiscard]] bool hear(qsizetype count) const
        {
            return VirtualSession::waitUntil([&] { return texts().size() >= count; });
        }

        mutable std::mutex mutex;
        QByteArrayList all;
        std::unique_ptr<Wayland::DataControlEngine> engine; // last: it calls back until it is gone
    };
    void start(Watch& watch, std::chrono::milliseconds patience = 20s) const;
    void reads(const char* name, const Answers& answers, const QByteArray& text);
    [[nodiscard]] QByteArray pasted() const { return m_session->desktop().pasted(u"UTF8_STRING"_s); }

    std::unique_ptr<VirtualSession> m_session;
};

void DataControlReadingTest::initTestCase()
{
    if (const QString missing = SwayCompositor::missing(); !missing.isEmpty())
        QSKIP(qPrintable(missing));
    m_session = std::make_unique<VirtualSession>(VirtualSession::Options{.kind = VirtualSession::Kind::sway});
    QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
}

void DataControlReadingTest::start(Watch& watch, std::chrono::milliseconds patience) const
{
    Wayland::DataControlEngine::Options options;
    const QProcessEnvironment& environment = m_session->environment();
    options.display =
        (environment.value(u"XDG_RUNTIME_DIR"_s) + u'/' + environment.value(u"WAYLAND_DISPLAY"_s)).toLocal8Bit();
    options.selections.reading.secretTargets = {QLatin1StringView(mark)};
    options.selections.reading.stepTimeout = patience;
    options.selections.reading.formTimeout = 2 * patience;
    options.onChange = [&watch](const SelectionSnapshot& snapshot) {
        const std::scoped_lock lock(watch.mutex);
        if (!snapshot.isInitial)
            watch.all.append(snapshot.content.text.value_or("nothing"));
    };
    watch.engine = Wayland::DataControlEngine::start(options);
    QVERIFY(watch.engine);
}

void DataControlReadingTest::reads(const char* /*name*/, const Answers& answers, const QByteArray& text)
{
    const bool isGivenUp = std::ranges::any_of(answers, [](const Answer& answer) {
        return QList{Manner::Mute, Manner::StallInTheMiddle, Manner::EndlessPieces}.contains(answer.manner);
    });
    Watch watch;
    start(watch, isGivenUp ? 3s : 20s); // a fair answer is to come in that time, too
    WaylandOwner owner(*m_session);
    owner.copy(answers);
    QVERIFY(watch.hear(1));
    watch.engine->settled().wait();
    QCOMPARE(watch.texts(), QByteArrayList{text});
    // What is marked, or could not be read, goes with its owner.
    owner.die();
    watch.engine->settled().wait();
    QCOMPARE(pasted(), text == "nothing" ? QByteArray() : text);
    QVERIFY(!answers.contains(mark) || owner.contentAsked().isEmpty());
}

void DataControlReadingTest::tellsTheEndOfATextFromThatOfItsOwner()
{
    const QByteArray large(3'000'000, 'x');
    const auto text = [&](Manner manner, qsizetype pieceBytes = 65536) {
        return Answers{{asText, {.bytes = large, .manner = manner, .pieceBytes = pieceBytes}}};
    };
    checkRows(this, &DataControlReadingTest::reads,
              {{"at once", text(Manner::AtOnce), large},
               {"in pieces", text(Manner::InPieces), large},
               {"its owner dies", text(Manner::DieInTheMiddle), "nothing"},
               {"its owner dies early", text(Manner::DieInTheMiddle, 5000), "nothing"}});
}

void DataControlReadingTest::badOwners()
{
    const Answer text{.bytes = "text"};
    const Answer mute{.manner = Manner::Mute};
    const Answer dripping{.bytes = "x", .manner = Manner::EndlessPieces};
    const Answer stalling{.bytes = QByteArray(400'000, 'x'), .manner = Manner::StallInTheMiddle};
    checkRows(this, &DataControlReadingTest::reads,
              {{"mute", {{asText, mute}}, "nothing"},
               {"mute about the picture", {{"image/png", mute}, {asText, text}}, "text"},
               {"a picture that drips", {{"image/png", dripping}, {asText, text}}, "text"},
               {"stalls", {{asText, stalling}}, "nothing"},
               {"many types", amongMany({{asText, text}}), "text"},
               {"a mark behind many types", amongMany({{asText, text}, {mark, text}}), "nothing"},
               {"names that are none",
                {{"a\nb", text}, {"\xff\xfe", text}, {QByteArray(4000, 'n'), text}, {asText, text}},
                "text"},
               {"no types", {}, "nothing"}});
}

void DataControlReadingTest::keepsUpWithAnOwnerThatChanges()
{
    constexpr int changes = 1000;
    Watch watch;
    start(watch);
    WaylandOwner owner(*m_session);
    owner.copy({{asText, {.manner = Manner::Mute}}}); // holds nothing up
    for (int i = 0; i < changes; ++i)
        owner.copy({{asText, {.bytes = QByteArray::number(i)}}});
    QVERIFY(VirtualSession::waitUntil([&] { return watch.texts().contains(QByteArray::number(changes - 1)); }));
    QCOMPARE(watch.texts().last(), QByteArray::number(changes - 1));
}

void DataControlReadingTest::twoManagersComeToRest()
{
    Watch one;
    Watch other;
    start(one);
    start(other);
    WaylandOwner owner(*m_session);
    owner.copy({{asText, {.bytes = "text"}}});
    QVERIFY(one.hear(1) && other.hear(1));
    // Both take its content over. One is the faster; the other hears of one more copy at most.
    owner.die();
    for (int round = 0; round < 3; ++round) {
        one.engine->settled().wait();
        other.engine->settled().wait();
        QCOMPARE(pasted(), QByteArray("text"));
    }
    QVERIFY(one.texts().size() + other.texts().size() <= 3);
}

void DataControlReadingTest::readersThatMakeItWait()
{
    std::signal(SIGPIPE, SIG_IGN);
    for (const bool isGone : {false, true}) {
        Wayland::OutgoingPipes pipes(20s);
        int ends[2] = {-1, -1};
        QCOMPARE(::pipe2(ends, O_CLOEXEC), 0);
        const int kept = ::dup(ends[1]);
        pipes.add(ends[1], QByteArray(3'000'000, 'x'));
        ::fcntl(kept, F_SETFL, 0); // no longer O_NONBLOCK
        if (isGone)
            ::close(ends[0]);
        pipes.serve();
        QCOMPARE(pipes.deadline().has_value(), !isGone);
        pipes.expire(pipes.deadline().value_or(Wayland::OutgoingPipes::Clock::time_point()));
        QVERIFY(!pipes.deadline());
        ::close(kept);
        if (!isGone)
            ::close(ends[0]);
    }
}

/// The last one: nothing works afterwards.
void DataControlReadingTest::compositorDiesInTheMiddle()
{
    Watch watch;
    start(watch);
    WaylandOwner owner(*m_session);
    owner.copy({{asText, {.bytes = QByteArray(400'000, 'x'), .manner = Manner::StallInTheMiddle}}});
    QVERIFY(VirtualSession::waitUntil([&] { return !owner.contentAsked().isEmpty(); }));
    m_session->crashDisplay();
    const auto settled = watch.engine->settled();
    QCOMPARE(settled.wait_for(20s), std::future_status::ready);
    watch.engine.reset();
    QVERIFY(watch.texts().isEmpty());
}

QTEST_GUILESS_MAIN(DataControlReadingTest)
#include "DataControlReadingTest.moc"
