#include "SmartActionRunner.h"

#include "Fakes.h"
#include "History/JSONHistoryStore.h"
#include "HistoryViewModel.h"
#include "PasteService.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace ClipboardCore;
using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using Kind = SmartActionEffect::Kind;

namespace {

/// The notice of the actions that these tests run, and what becomes of it where the effect has yet to be answered.
const QString actionNotice = u"the action's notice"_s;
const QString standingNotice = u"until the next: the action's notice"_s;

/// A view model whose actions are carried out over fakes. `log` has the notices and the marks of own changes, in order.
struct Desk
{
    Desk()
    {
        model->markOwnChange = [this] { log.append(u"own change %1"_s.arg(pasteboard.writes.size())); };
        workspace.desktop = folder.filePath(u"Desktop"_s);
        QDir().mkpath(*workspace.desktop);
    }

    void run(Kind kind, const QString& payload)
    {
        const auto notices = [this] { return log.count(actionNotice) + log.count(standingNotice); };
        const qsizetype before = notices();
        model->runSmartAction({u"label"_s, [kind, payload] {
                                   return SmartActionResult{{kind, payload}, actionNotice};
                               }});
        QVERIFY(QTest::qWaitFor([&] { return notices() > before; }));
    }
    [[nodiscard]] QStringList takeLog() { return std::exchange(log, {}); }
    [[nodiscard]] QByteArray copied() const { return pasteboard.content.string.value_or("none"); }

    QTemporaryDir folder;
    QStringList log;
    FakePasteboard pasteboard;
    FakeWorkspace workspace;
    FakeKeystrokeSender keystrokes;
    FakeTextRecognizer recognizer;
    FakeLinkMetadataProvider pages;
    std::optional<QImage> code;
    QByteArray encoded;
    std::function<void(const QString&)> toast = [this](const QString& text) { log.append(text); };
    PasteService pasteService{keystrokes, toast};
    JSONHistoryStore store{folder.filePath(u"history.json"_s), 500, 1000.0};
    std::unique_ptr<SmartActionRunner> runner = std::make_unique<SmartActionRunner>(
        SmartActionRunner::Services{pasteboard, workspace, recognizer, pages, toast, [this](const QByteArray& bytes) {
                                        encoded = bytes;
                                        return code;
                                    }});
    std::unique_ptr<HistoryViewModel> model = std::make_unique<HistoryViewModel>(
        store, HistoryViewModel::Services{
                   pasteboard, pasteService, toast, [](const ClipItem&) { return QList<SmartAction>(); },
                   [this](const SmartActionEffect& effect, HistoryViewModel& on) { runner->perform(effect, on); },
                   [this](const QString& text) { log.append(u"until the next: "_s + text); }});
};

} // namespace

class SmartActionRunnerTest final : public QObject
{
    Q_OBJECT

private slots:
    void copies();
    void opensAndReveals();
    void savesToTheDesktop();
    void saysWhereItSavesWithoutADesktop();
    void makesCodes();
    void codesThatCannotBeMade();
    void refusesWhatIsNoPicture_data();
    void refusesWhatIsNoPicture();
    void recognizesText();
    void linksInMarkdown_data();
    void linksInMarkdown();
    void linksThatDoNotParse_data();
    void linksThatDoNotParse();
    void theLastToFinishOwnsThePasteboard();
    void nothingIsWrittenOnceTheModelIsGone();
};

void SmartActionRunnerTest::copies()
{
    Desk desk;
    desk.run(Kind::copy, u"naïve\n"_s);
    QCOMPARE(desk.copied(), "na\xc3\xafve\n");
    QCOMPARE(desk.log, QStringList({u"own change 1"_s, actionNotice}));

    desk.model->markOwnChange = nullptr;
    desk.run(Kind::copy, u"unmarked"_s);
    QCOMPARE(desk.copied(), "unmarked");
}

void SmartActionRunnerTest::opensAndReveals()
{
    Desk desk;
    desk.run(Kind::openURL, u"https://example.org/a?b=%20c#d"_s);
    desk.run(Kind::revealInFinder, u"/nowhere/a b.txt"_s);
    QCOMPARE(desk.workspace.opened, QStringList{u"https://example.org/a?b=%20c#d"_s});
    QCOMPARE(desk.workspace.revealed, QStringList{u"/nowhere/a b.txt"_s});
    QCOMPARE(desk.log, QStringList({actionNotice, actionNotice}));
    QCOMPARE(desk.pasteboard.writes.size(), 0);
}

void SmartActionRunnerTest::savesToTheDesktop()
{
    Desk desk;
    const QString picture = desk.folder.filePath(u"shot.png"_s);
    QVERIFY(QImage(2, 1, QImage::Format_RGB32).save(picture));
    desk.run(Kind::copyFileToDesktop, picture);
    desk.run(Kind::copyFileToDesktop, picture);
    desk.run(Kind::copyFileToDesktop, desk.folder.filePath(u"gone.png"_s));
    const QString desktop = *desk.workspace.desktop;
    desk.runner.reset(); // finishes what was begun

    QCOMPARE(QDir(desktop).entryList(QDir::Files, QDir::Name), QStringList({u"shot 2.png"_s, u"shot.png"_s}));
    QCOMPARE(desk.log, QStringList(3, actionNotice));
    QCOMPARE(desk.pasteboard.writes.size(), 0);
}

void SmartActionRunnerTest::saysWhereItSavesWithoutADesktop()
{
    Desk desk;
    desk.workspace.desktop.reset();
    desk.workspace.pictures = desk.folder.filePath(u"Pictures"_s);
    QDir().mkpath(desk.workspace.pictures);
    const QString picture = desk.folder.filePath(u"0123456789abcdef"_s.repeated(4) + u".png"_s);
    QFile file(picture);
    QVERIFY(file.open(QIODevice::WriteOnly) &&
            file.setFileTime(QDateTime({2026, 3, 9}, {15, 4, 5}), QFile::FileModificationTime));
    desk.run(Kind::copyFileToDesktop, picture);
    QTRY_COMPARE(desk.log.value(1), u"Saved “Picture 2026-03-09 15.04.05.png” to Pictures"_s);
    QVERIFY(QFile::exists(desk.workspace.pictures + u"/Picture 2026-03-09 15.04.05.png"_s));
    QVERIFY(QDir(desk.workspace.pictures).removeRecursively());
    desk.run(Kind::copyFileToDesktop, picture);
    QTRY_COMPARE(desk.log.value(3), u"Couldn't save image"_s);
}

void SmartActionRunnerTest::makesCodes()
{
    Desk desk;
    desk.code = QImage(30, 30, QImage::Format_Mono);
    desk.code->setColorTable({0xffffffff, 0xff000000});
    desk.code->fill(1);
    desk.run(Kind::copyQRCode, u"né"_s);
    QCOMPARE(desk.encoded, "n\xc3\xa9");
    QCOMPARE(QImage::fromData(*desk.pasteboard.content.png, "PNG").convertToFormat(QImage::Format_RGB32),
             desk.code->convertToFormat(QImage::Format_RGB32));
    QCOMPARE(desk.model->qrPreview(), *desk.code);
    QCOMPARE(desk.log, QStringList({u"own change 1"_s, u"QR code copied · scan from preview"_s, actionNotice}));
}

void SmartActionRunnerTest::codesThatCannotBeMade()
{
    Desk desk;
    const QImage before(1, 1, QImage::Format_RGB32);
    desk.model->setQrPreview(before);
    desk.run(Kind::copyQRCode, u"a"_s);
    QCOMPARE(desk.log, QStringList({u"Couldn't make QR code"_s, actionNotice}));
    QCOMPARE(desk.model->qrPreview(), before);
    QCOMPARE(desk.pasteboard.writes.size(), 0);
}

void SmartActionRunnerTest::refusesWhatIsNoPicture_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("exists");

    QTest::newRow("deleted") << QByteArray() << false;
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("text") << QByteArray("Dear reader") << true;
    QTest::newRow("more pixels than can be held")
        << QByteArray::fromHex("89504e470d0a1a0a0000000d4948445200ffffff00ffffff0806000000") << true;
}

void SmartActionRunnerTest::refusesWhatIsNoPicture()
{
    QFETCH(const QByteArray, content);
    QFETCH(const bool, exists);

    Desk desk;
    const QString path = desk.folder.filePath(u"shot.png"_s);
    if (exists) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    desk.run(Kind::recognizeText, path);
    QCOMPARE(desk.log, QStringList({u"Couldn't load image"_s, actionNotice}));
    QCOMPARE(desk.recognizer.paths, QStringList());
}

void SmartActionRunnerTest::recognizesText()
{
    Desk desk;
    const QString path = desk.folder.filePath(u"shot.png"_s);
    QVERIFY(QImage(2, 1, QImage::Format_RGB32).save(path));
    desk.run(Kind::recognizeText, path);
    desk.run(Kind::recognizeText, path);
    QCOMPARE(desk.recognizer.paths, QStringList({path, path}));
    QCOMPARE(desk.takeLog(), QStringList({standingNotice, standingNotice}));

    // A flag is one character of four units.
    desk.recognizer.finish({u"Déjà vu"_s, u"two \U0001F1E9\U0001F1EA"_s});
    QCOMPARE(desk.copied(), u"Déjà vu\ntwo \U0001F1E9\U0001F1EA"_s.toUtf8());
    QCOMPARE(desk.takeLog(), QStringList({u"own change 1"_s, u"Copied 13 chars of text"_s}));

    desk.recognizer.finish({});
    QCOMPARE(desk.log, QStringList{u"No text found"_s});
    QCOMPARE(desk.pasteboard.writes.size(), 1);
}

void SmartActionRunnerTest::linksInMarkdown_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<std::optional<QString>>("title");
    QTest::addColumn<QByteArray>("expected");

    const QString link = u"https://example.org:80/a?%1"_s;
    QTest::newRow("title") << link << std::optional(u"Naïve [x] \\ %1"_s)
                           << QByteArray("[Na\xc3\xafve [x] \\ %1](https://example.org:80/a?%1)");
    QTest::newRow("no title") << link << std::optional<QString>()
                              << QByteArray("[example.org](https://example.org:80/a?%1)");
    QTest::newRow("neither title nor host")
        << u"mailto:a@b.c"_s << std::optional<QString>() << QByteArray("[mailto:a@b.c](mailto:a@b.c)");
}

void SmartActionRunnerTest::linksInMarkdown()
{
    QFETCH(const QString, link);
    QFETCH(const std::optional<QString>, title);
    QFETCH(const QByteArray, expected);

    Desk desk;
    desk.run(Kind::copyMarkdownLink, link);
    QCOMPARE(desk.pages.links, QList{QUrl(link)});
    QCOMPARE(desk.pages.limits, QList<std::chrono::milliseconds>{std::chrono::seconds(3)});
    QCOMPARE(desk.takeLog(), QStringList{standingNotice});

    desk.pages.finish(title);
    QCOMPARE(desk.copied(), expected);
    QCOMPARE(desk.log, QStringList({u"own change 1"_s, u"Copied Markdown link"_s}));
}

void SmartActionRunnerTest::linksThatDoNotParse_data()
{
    QTest::addColumn<QString>("link");

    QTest::newRow("empty") << QString();
    QTest::newRow("open bracket") << u"http://[::1"_s;
    QTest::newRow("port that is no number") << u"http://example.org:http/"_s;
    QTest::newRow("longer than any program takes") << u"http://example.org/"_s + QString(200'000, u'a');
}

void SmartActionRunnerTest::linksThatDoNotParse()
{
    QFETCH(const QString, link);

    Desk desk;
    desk.run(Kind::openURL, link);
    desk.run(Kind::copyMarkdownLink, link);
    QCOMPARE(desk.log, QStringList({actionNotice, actionNotice}));
    QCOMPARE(desk.workspace.opened, QStringList());
    QCOMPARE(desk.pages.links, QList<QUrl>());
}

void SmartActionRunnerTest::theLastToFinishOwnsThePasteboard()
{
    Desk desk;
    desk.run(Kind::copyMarkdownLink, u"https://example.org/1"_s);
    desk.run(Kind::copyMarkdownLink, u"https://example.org/2"_s);
    const auto first = desk.pages.underWay.takeFirst();
    desk.pages.finish(u"Two"_s);
    first(u"One"_s);
    QCOMPARE(desk.copied(), "[One](https://example.org/1)");
    QCOMPARE(desk.pasteboard.writes.size(), 2);
}

void SmartActionRunnerTest::nothingIsWrittenOnceTheModelIsGone()
{
    Desk desk;
    desk.run(Kind::copyMarkdownLink, u"https://example.org/"_s);
    desk.model.reset();
    desk.pages.finish(u"Title"_s);
    QCOMPARE(desk.pasteboard.writes.size(), 0);
}

QTEST_GUILESS_MAIN(SmartActionRunnerTest)

#include "SmartActionRunnerTest.moc"
