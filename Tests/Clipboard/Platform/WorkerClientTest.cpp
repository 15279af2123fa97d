#include "WorkerLinkMetadataProvider.h"
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
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto noHurry = std::chrono::milliseconds(30s);
constexpr int patience = 20'000; // ms

} // namespace

/// The worker's clients against programs that behave worse than the worker does.
class WorkerClientTest final : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void readsLines_data();
    void readsLines();
    void readsTitle_data();
    void readsTitle();
    void keepsSecretsOfTheSession();
    void runsAFewAtOnce();
    void waitingCounts();
    void leavesNothingBehind();
    void mayBeDestroyedByItsAnswer();

private:
    /// A program that is this shell script; none for an empty one. "$folder" is a folder of its own.
    QString standIn(const QByteArray& script);
    /// The answer; nothing when it came at once, twice or never.
    std::optional<QStringList> recognize(const QString& program, std::chrono::milliseconds limit = noHurry,
                                         const QString& picture = u"/a picture.png"_s);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void WorkerClientTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

QString WorkerClientTest::standIn(const QByteArray& script)
{
    if (script.isEmpty())
        return m_folder->filePath(u"missing"_s);
    QFile file(m_folder->filePath(u"worker"_s));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("The stand-in cannot be written");
    if (!script.startsWith("#!"))
        file.write("#!/bin/sh\nfolder='" + m_folder->path().toUtf8() + "'\n");
    file.write(script + '\n');
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file.fileName();
}

std::optional<QStringList> WorkerClientTest::recognize(const QString& program, std::chrono::milliseconds limit,
                                                       const QString& picture)
{
    WorkerTextRecognizer recognizer(program, limit);
    QList<QStringList> answers;
    recognizer.recognize(picture, [&](const QStringList& lines) { answers.append(lines); });
    const bool isTooEarly = !answers.isEmpty();
    // Who has no child left has heard all that there is to hear of it.
    const auto hasNoChild = [] {
        siginfo_t child{};
        return waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) != 0;
    };
    if (!QTest::qWaitFor([&] { return !answers.isEmpty() && hasNoChild(); }, patience))
        return std::nullopt;
    return isTooEarly || answers.size() != 1 ? std::nullopt : std::optional(answers.first());
}

void WorkerClientTest::readsLines_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<std::chrono::milliseconds>("limit");
    QTest::addColumn<QStringList>("expected");

    const QStringList none;
    const std::chrono::milliseconds soon = 500ms;
    QTest::newRow("lines") << QByteArray(R"(printf ' one \n\n\ttwo\n')") << noHurry << QStringList{u"one"_s, u"two"_s};
    QTest::newRow("is told what to do") << QByteArray(R"(printf '%s\n' "$@")") << noHurry
                                        << QStringList{u"recognize"_s, u"/a picture.png"_s};
    QTest::newRow("lets the event loop turn")
        << QByteArray(R"(until [ -e "$folder/turned" ]; do sleep 0.01; done; echo text)") << noHurry
        << QStringList{u"text"_s};
    QTest::newRow("fails") << QByteArray("echo text; exit 1") << noHurry << none;
    QTest::newRow("crashes") << QByteArray("echo text; kill -SEGV $$") << noHurry << none;
    QTest::newRow("hangs") << QByteArray("trap '' TERM; echo text; exec sleep 60") << soon << none;
    QTest::newRow("half a character") << QByteArray(R"(printf 'gr\303')") << noHurry << none;
    QTest::newRow("without end") << QByteArray("exec yes") << noHurry << none;
    QTest::newRow("complains without end") << QByteArray("exec yes >&2") << soon << none;
    QTest::newRow("is missing") << QByteArray() << noHurry << none;
    QTest::newRow("no program") << QByteArray("#!/does/not/exist") << noHurry << none;
    QTest::newRow("leaves a program behind") << QByteArray("sleep 25 & echo text") << noHurry << QStringList{u"text"_s};
}

void WorkerClientTest::readsLines()
{
    QFETCH(QByteArray, script);
    QFETCH(std::chrono::milliseconds, limit);
    QFETCH(QStringList, expected);
    QTimer::singleShot(0, this, [this] { QVERIFY(QFile(m_folder->filePath(u"turned"_s)).open(QFile::WriteOnly)); });
    const std::optional<QStringList> lines = recognize(standIn(script), limit);
    QVERIFY(lines);
    QCOMPARE(*lines, expected);
}

void WorkerClientTest::readsTitle_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<std::optional<QString>>("expected");

    QTest::newRow("a title") << QByteArray(R"(printf '[A] "title"\n')") << std::optional(uR"([A] "title")"_s);
    QTest::newRow("is given the link") << QByteArray("head -c 30")
                                       << std::optional(u"https://example.org/?q=aaaaaaa"_s);
    QTest::newRow("several lines") << QByteArray(R"(printf 'a\n\n b\n')") << std::optional(u"a b"_s);
    QTest::newRow("a blank") << QByteArray(R"(printf ' \n')") << std::optional<QString>();
    QTest::newRow("hangs") << QByteArray("exec sleep 60") << std::optional<QString>();
}

void WorkerClientTest::readsTitle()
{
    QFETCH(QByteArray, script);
    WorkerLinkMetadataProvider provider(standIn(script));
    // More than a pipe holds, so that a worker that does not read it breaks the pipe.
    const QUrl link(u"https://example.org/?q="_s + QString(200'000, u'a'));
    std::optional<std::optional<QString>> answer;
    provider.fetchTitle(link, script.contains("sleep") ? 300ms : noHurry,
                        [&](const std::optional<QString>& title) { answer = title; });
    QTRY_VERIFY_WITH_TIMEOUT(answer, patience);
    QTEST(*answer, "expected");
}

void WorkerClientTest::keepsSecretsOfTheSession()
{
    qputenv("TESSALY_TEST_TOKEN", "secret");
    qputenv("TESSDATA_PREFIX", "/opt/tessdata");
    const std::optional<QStringList> environment = recognize(standIn("env"));
    qunsetenv("TESSALY_TEST_TOKEN");
    qunsetenv("TESSDATA_PREFIX");
    QVERIFY(environment);
    QVERIFY(environment->contains(u"TESSDATA_PREFIX=/opt/tessdata"_s));
    QVERIFY(environment->filter(u"TESSALY_TEST_TOKEN"_s).isEmpty());
}

void WorkerClientTest::runsAFewAtOnce()
{
    WorkerTextRecognizer recognizer(standIn(R"([ -e "$folder/go" ] || touch "$folder/early.$$"
                                               until [ -e "$folder/go" ]; do sleep 0.01; done; echo "$2")"));
    QStringList pictures;
    for (const char picture : QByteArray("abcdefg"))
        recognizer.recognize(QString(QLatin1Char(picture)), [&](const QStringList& lines) { pictures += lines; });
    const QDir folder(m_folder->path());
    QTRY_COMPARE_WITH_TIMEOUT(folder.entryList({u"early.*"_s}).size(), WorkerTextRecognizer::maxAtOnce, patience);
    QVERIFY(QFile(folder.filePath(u"go"_s)).open(QFile::WriteOnly));
    QTRY_COMPARE_WITH_TIMEOUT(pictures.size(), 7, patience);
    QCOMPARE(folder.entryList({u"early.*"_s}).size(), WorkerTextRecognizer::maxAtOnce);
    pictures.sort();
    QCOMPARE(pictures.join(QString()), u"abcdefg"_s);
}

void WorkerClientTest::waitingCounts()
{
    WorkerTextRecognizer recognizer(standIn(R"(sleep 0.4; touch "$folder/late.$$"; exec sleep 60)"), 600ms);
    int answers = 0;
    for (int i = 0; i < 6; ++i)
        recognizer.recognize(u"/picture.png"_s, [&](const QStringList& lines) { answers += lines.isEmpty() ? 1 : 0; });
    QTRY_COMPARE_WITH_TIMEOUT(answers, 6, patience);
    // Those that waited had no time left.
    QVERIFY(QDir(m_folder->path()).entryList({u"late.*"_s}).size() <= WorkerTextRecognizer::maxAtOnce);
}

void WorkerClientTest::leavesNothingBehind()
{
    auto recognizer =
        std::make_unique<WorkerTextRecognizer>(standIn(R"(touch "$folder/pid.$$"; trap '' TERM; exec sleep 60)"));
    bool isAnswered = false;
    for (int i = 0; i < 5; ++i)
        recognizer->recognize(u"/picture.png"_s, [&](const QStringList& /*lines*/) { isAnswered = true; });
    const QDir folder(m_folder->path());
    const QStringList started{u"pid.*"_s};
    QTRY_COMPARE_WITH_TIMEOUT(folder.entryList(started).size(), WorkerTextRecognizer::maxAtOnce, patience);

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
    for (const QByteArray& script : {QByteArray("echo text"), QByteArray("exec yes"), QByteArray("exec sleep 60")}) {
        auto recognizer = std::make_unique<WorkerTextRecognizer>(standIn(script), 300ms);
        int answers = 0;
        for (int i = 0; i < 4; ++i) {
            recognizer->recognize(u"/picture.png"_s, [&](const QStringList& /*lines*/) {
                ++answers;
                recognizer.reset();
            });
        }
        QTRY_VERIFY_WITH_TIMEOUT(!recognizer, patience);
        QCOMPARE(answers, 1);
    }
}

QTEST_GUILESS_MAIN(WorkerClientTest)
#include "WorkerClientTest.moc"
