#include "Rows.h"
#include "WorkerLinkMetadataProvider.h"
#include "WorkerSelfCheck.h"
#include "WorkerTextRecognizer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cerrno>
#include <csignal>
#include <memory>
#include <sys/wait.h>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto noHurry = std::chrono::milliseconds(120s);

} // namespace

/// The worker's clients against programs that behave worse than the worker does.
class WorkerClientTest final : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void readsLines();
    void readsTitle();
    void tellsWhatIsNotConfined();
    void runsAFewAtOnce();
    void leavesNothingBehind();
    void mayBeDestroyedByItsAnswer();

private:
    void linesOf(const char* name, const QByteArray& script, std::chrono::milliseconds limit,
                 const QStringList& expected);
    void titleOf(const char* name, const QByteArray& script, const std::optional<QString>& expected);
    void problemOf(const char* name, const QByteArray& script, const QString& expected);
    /// A program that is this shell script. "$folder" is a folder of its own.
    QString standIn(const QByteArray& script);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void WorkerClientTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

QString WorkerClientTest::standIn(const QByteArray& script)
{
    QFile file(m_folder->filePath(u"worker"_s));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("The stand-in cannot be written");
    if (!script.startsWith("#!"))
        file.write("#!/bin/sh\nfolder='" + m_folder->path().toUtf8() + "'\n");
    file.write(script + '\n');
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file.fileName();
}

/// They come once, and not at once.
void WorkerClientTest::linesOf(const char* /*name*/, const QByteArray& script, std::chrono::milliseconds limit,
                               const QStringList& expected)
{
    init();
    QTimer::singleShot(0, this, [this] { QVERIFY(QFile(m_folder->filePath(u"turned"_s)).open(QFile::WriteOnly)); });
    WorkerTextRecognizer recognizer(standIn(script), limit);
    QList<QStringList> answers;
    recognizer.recognize({u"/a picture.png"_s}, [&](const QStringList& lines) { answers.append(lines); });
    QVERIFY(answers.isEmpty());
    // Who has no child left has heard all that there is to hear of it.
    const auto hasNoChild = [] {
        siginfo_t child{};
        return waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) != 0;
    };
    QTRY_VERIFY(!answers.isEmpty() && hasNoChild());
    QCOMPARE(answers, QList<QStringList>{expected});
}

void WorkerClientTest::readsLines()
{
    constexpr auto soon = 500ms;
    qputenv("TESSALY_TEST_TOKEN", "secret");
    qputenv("TESSDATA_PREFIX", "/opt/tessdata");
    checkRows(this, &WorkerClientTest::linesOf,
              {{"lines", R"(printf ' one \n\n\ttwo\n')", noHurry, {u"one"_s, u"two"_s}},
               {"is told what to do", R"(printf '%s\n' "$@")", noHurry, {u"recognize"_s, u"/a picture.png"_s}},
               {"no secrets of the session", "env | grep ^TESS", noHurry, {u"TESSDATA_PREFIX=/opt/tessdata"_s}},
               {"lets the event loop turn",
                R"(until [ -e "$folder/turned" ]; do sleep 0.01; done; echo text)",
                noHurry,
                {u"text"_s}},
               {"fails", "echo text; exit 1", noHurry, {}},
               {"crashes", "echo text; kill -SEGV $$", noHurry, {}},
               {"hangs", "trap '' TERM; echo text; exec sleep 120", soon, {}},
               {"half a character", R"(printf 'gr\303')", noHurry, {}},
               {"without end", "exec yes", noHurry, {}},
               {"complains without end", "exec yes >&2", soon, {}},
               {"no program", "#!/does/not/exist", noHurry, {}},
               {"leaves a program behind", "sleep 120 & echo text", noHurry, {u"text"_s}}});
}

void WorkerClientTest::titleOf(const char* /*name*/, const QByteArray& script, const std::optional<QString>& expected)
{
    WorkerLinkMetadataProvider provider(standIn(script));
    // More than a pipe holds, so that a worker that does not read it breaks the pipe.
    const QUrl link(u"https://example.org/?q="_s + QString(200'000, u'a'));
    std::optional<std::optional<QString>> answer;
    provider.fetchTitle(link, script.contains("sleep") ? 300ms : noHurry,
                        [&](const std::optional<QString>& title) { answer = title; });
    QTRY_VERIFY(answer);
    QCOMPARE(*answer, expected);
}

void WorkerClientTest::readsTitle()
{
    checkRows(this, &WorkerClientTest::titleOf,
              {{"is given the link", "head -c 30", u"https://example.org/?q=aaaaaaa"_s},
               {"several lines", R"(printf '[A]\n\n "b"\n')", uR"([A] "b")"_s},
               {"a blank", R"(printf ' \n')", {}},
               {"hangs", "exec sleep 120", {}}});
}

void WorkerClientTest::problemOf(const char* /*name*/, const QByteArray& script, const QString& expected)
{
    WorkerSelfCheck worker(standIn(script));
    QStringList problems;
    const auto listen = [&](const QString& problem) { problems.append(problem); };
    worker.check(listen);
    QTRY_COMPARE(problems, QStringList{expected});
    standIn("exit 1");
    worker.check(listen);
    // What was found in order is not looked at again.
    QTRY_COMPARE(problems.value(1, u"none yet"_s), expected.isEmpty() ? expected : u"tessaly-worker cannot be run."_s);
}

void WorkerClientTest::tellsWhatIsNotConfined()
{
    checkRows(this, &WorkerClientTest::problemOf,
              {{"nothing", R"([ "$*" = check ])", QString()},
               {"two things", "echo 'no a: x'; echo 'no b'", u"tessaly-worker is not confined: no a: x; no b."_s},
               {"no program", "#!/does/not/exist", u"tessaly-worker cannot be run."_s}});
}

void WorkerClientTest::runsAFewAtOnce()
{
    WorkerTextRecognizer recognizer(standIn(R"([ -e "$folder/go" ] || touch "$folder/early.$$"
                                               until [ -e "$folder/go" ]; do sleep 0.01; done; echo "$2")"));
    QStringList pictures;
    for (const char picture : QByteArray("abcdefg"))
        recognizer.recognize({QString(QLatin1Char(picture))}, [&](const QStringList& lines) { pictures += lines; });
    const QDir folder(m_folder->path());
    QTRY_COMPARE(folder.entryList({u"early.*"_s}).size(), WorkerTextRecognizer::maxAtOnce);
    QVERIFY(QFile(folder.filePath(u"go"_s)).open(QFile::WriteOnly));
    QTRY_COMPARE(pictures.size(), 7);
    QCOMPARE(folder.entryList({u"early.*"_s}).size(), WorkerTextRecognizer::maxAtOnce);
    pictures.sort();
    QCOMPARE(pictures.join(QString()), u"abcdefg"_s);
}

void WorkerClientTest::leavesNothingBehind()
{
    auto recognizer =
        std::make_unique<WorkerTextRecognizer>(standIn(R"(touch "$folder/pid.$$"; trap '' TERM; exec sleep 120)"));
    bool isAnswered = false;
    for (int i = 0; i < 5; ++i)
        recognizer->recognize({u"/picture.png"_s}, [&](const QStringList& /*lines*/) { isAnswered = true; });
    const QDir folder(m_folder->path());
    const QStringList started{u"pid.*"_s};
    QTRY_COMPARE(folder.entryList(started).size(), WorkerTextRecognizer::maxAtOnce);

    recognizer.reset();
    QCoreApplication::processEvents();
    QVERIFY(!isAnswered);
    const QStringList found = folder.entryList(started);
    QCOMPARE(found.size(), WorkerTextRecognizer::maxAtOnce);
    for (const QString& name : found) {
        // A process that nobody asked for its end would still be there.
        QCOMPARE(::kill(name.mid(4).toInt(), 0), -1);
        QCOMPARE(errno, ESRCH);
    }
}

void WorkerClientTest::mayBeDestroyedByItsAnswer()
{
    for (const QByteArray& script : {QByteArray("echo text"), QByteArray("exec yes"), QByteArray("exec sleep 120")}) {
        auto recognizer = std::make_unique<WorkerTextRecognizer>(standIn(script), 300ms);
        int answers = 0;
        for (int i = 0; i < 4; ++i) {
            recognizer->recognize({u"/picture.png"_s}, [&](const QStringList& /*lines*/) {
                ++answers;
                recognizer.reset();
            });
        }
        QTRY_VERIFY(!recognizer);
        QCOMPARE(answers, 1);
    }
}

QTEST_GUILESS_MAIN(WorkerClientTest)
#include "WorkerClientTest.moc"
