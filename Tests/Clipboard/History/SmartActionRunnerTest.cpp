#include "SmartActionRunner.h"

#include "Actions/SmartActions.h"
#include "Rows.h"
#include "SmartActionSymbols.h"
#include "TintedIcon.h"
#include "ViewModelFixture.h"

#include <QDir>
#include <QImage>
#include <QSet>
#include <QTest>

using namespace ClipboardCore;
using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using Kind = SmartActionEffect::Kind;

namespace {

const QString actionNotice = u"the action's notice"_s;
const QString ownChange = u"own change"_s;

/// A view model whose actions are carried out over fakes. Its toasts tell of own changes as well, in order.
struct Desk : ViewModelFixture
{
    Desk()
    {
        model.markOwnChange = [this] { toasts.append(ownChange); };
        perform = [this](const SmartActionEffect& effect) { runner->perform(effect, model); };
        workspace.desktop = folder.filePath(u"Desktop"_s);
        workspace.pictures = folder.filePath(u"Pictures"_s);
        QDir().mkpath(*workspace.desktop);
        QDir().mkpath(workspace.pictures);
    }

    void run(Kind kind, const QString& payload)
    {
        const qsizetype before = toasts.count(actionNotice);
        model.runSmartAction({u"label"_s, [kind, payload] {
                                  return SmartActionResult{{kind, payload}, actionNotice};
                              }});
        QVERIFY(QTest::qWaitFor([&] { return toasts.count(actionNotice) > before; }, patience));
    }
    [[nodiscard]] QStringList takeToasts() { return std::exchange(toasts, {}); }
    [[nodiscard]] QByteArray copied() const { return pasteboard.content.string.value_or("none"); }

    FakeWorkspace workspace;
    FakeTextRecognizer recognizer;
    FakeLinkMetadataProvider pages;
    std::optional<QImage> code;
    QByteArray encoded;
    std::unique_ptr<SmartActionRunner> runner = std::make_unique<SmartActionRunner>(SmartActionRunner::Services{
        pasteboard, workspace, recognizer, pages, [this](const ToastText& text) { toasts.append(text); },
        [this](const QByteArray& bytes) {
            encoded = bytes;
            return code;
        }});
};

} // namespace

class SmartActionRunnerTest final : public QObject
{
    Q_OBJECT

private slots:
    void copiesOpensAndReveals();
    void savesPictures();
    void makesCodes();
    void recognizesText();
    void linksInMarkdown();
    void linksThatDoNotParse();
    void nothingIsWrittenOnceTheModelIsGone();
    void everyActionHasItsDrawing();
};

void SmartActionRunnerTest::copiesOpensAndReveals()
{
    Desk desk;
    desk.run(Kind::copy, u"naïve\n"_s);
    QCOMPARE(desk.copied(), "na\xc3\xafve\n");
    QCOMPARE(desk.takeToasts(), QStringList({ownChange, actionNotice}));
    desk.run(Kind::openURL, u"https://example.org/a?b=%20c#d"_s);
    desk.run(Kind::revealInFinder, u"/nowhere/a b.txt"_s);
    QCOMPARE(desk.workspace.opened, QStringList{u"https://example.org/a?b=%20c#d"_s});
    QCOMPARE(desk.workspace.revealed, QStringList{u"/nowhere/a b.txt"_s});
    QCOMPARE(desk.pasteboard.writes.size(), 1);
}

void SmartActionRunnerTest::savesPictures()
{
    Desk desk;
    const QString first = desk.folder.filePath(u"shot.png"_s);
    QVERIFY(QImage(2, 1, QImage::Format_RGB32).save(first));
    desk.run(Kind::copyFileToDesktop, first);
    const QString desktop = *std::exchange(desk.workspace.desktop, std::nullopt);
    desk.toasts.clear();
    const QString picture = desk.folder.filePath(u"0123456789abcdef"_s.repeated(4) + u".png"_s);
    QFile file(picture);
    QVERIFY(file.open(QIODevice::WriteOnly) &&
            file.setFileTime(QDateTime({2026, 3, 9}, {15, 4, 5}), QFile::FileModificationTime));
    desk.run(Kind::copyFileToDesktop, picture);
    QTRY_COMPARE(desk.toasts.value(1), u"Saved “Picture 2026-03-09 15.04.05.png” to Pictures"_s);
    QVERIFY(QFile::exists(desk.workspace.pictures + u"/Picture 2026-03-09 15.04.05.png"_s));
    QVERIFY(QDir(desk.workspace.pictures).removeRecursively());
    desk.run(Kind::copyFileToDesktop, picture);
    QTRY_COMPARE(desk.toasts.value(3), u"Couldn't save image"_s);
    desk.runner.reset(); // finishes what was begun
    QCOMPARE(QDir(desktop).entryList(QDir::Files), QStringList{u"shot.png"_s});
}

void SmartActionRunnerTest::makesCodes()
{
    Desk desk;
    const QImage before(1, 1, QImage::Format_RGB32);
    desk.model.setQrPreview(before);
    desk.run(Kind::copyQRCode, u"a"_s); // of which none can be made
    QCOMPARE(desk.takeToasts(), QStringList({u"Couldn't make QR code"_s, actionNotice}));
    QCOMPARE(desk.model.qrPreview(), before);
    QCOMPARE(desk.pasteboard.writes.size(), 0);

    desk.code = QImage(30, 30, QImage::Format_Mono);
    desk.code->setColorTable({0xffffffff, 0xff000000});
    desk.code->fill(1);
    desk.run(Kind::copyQRCode, u"né"_s);
    QCOMPARE(desk.encoded, "n\xc3\xa9");
    QCOMPARE(QImage::fromData(*desk.pasteboard.content.png, "PNG").convertToFormat(QImage::Format_RGB32),
             desk.code->convertToFormat(QImage::Format_RGB32));
    QCOMPARE(desk.model.qrPreview(), *desk.code);
    QCOMPARE(desk.toasts, QStringList({ownChange, u"QR code copied · scan from preview"_s, actionNotice}));
}

void SmartActionRunnerTest::recognizesText()
{
    Desk desk;
    const QString path = desk.folder.filePath(u"shot.png"_s);
    const QByteArray tooLarge = "89504e470d0a1a0a0000000d4948445200ffffff00ffffff0806000000";
    for (const QByteArray& content : {"Dear reader"_ba, QByteArray::fromHex(tooLarge)}) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        desk.run(Kind::recognizeText, path);
        QCOMPARE(desk.takeToasts(), QStringList({u"Couldn't load image"_s, actionNotice}));
    }
    QVERIFY(QImage(2, 1, QImage::Format_RGB32).save(path));
    desk.run(Kind::recognizeText, path);
    desk.run(Kind::recognizeText, path);
    QCOMPARE(desk.recognizer.paths, QStringList({path, path}));
    QCOMPARE(desk.takeToasts(), desk.standing);

    // A flag is one character of four units.
    desk.recognizer.finish({u"Déjà vu"_s, u"two \U0001F1E9\U0001F1EA"_s});
    QCOMPARE(desk.copied(), u"Déjà vu\ntwo \U0001F1E9\U0001F1EA"_s.toUtf8());
    QCOMPARE(desk.takeToasts(), QStringList({ownChange, u"Copied 13 chars of text"_s}));
    desk.recognizer.finish({});
    QCOMPARE(desk.toasts, QStringList{u"No text found"_s});
    QCOMPARE(desk.pasteboard.writes.size(), 1);
}

void SmartActionRunnerTest::linksInMarkdown()
{
    using Title = std::optional<QString>;
    checkRows(
        +[](const char* link, const Title& title, const QByteArray& expected) {
            Desk desk;
            desk.run(Kind::copyMarkdownLink, QLatin1StringView(link));
            QCOMPARE(desk.pages.links, QList{QUrl(QLatin1StringView(link))});
            QCOMPARE(desk.standing, QStringList{actionNotice});
            desk.toasts.clear();
            desk.pages.finish(title);
            QCOMPARE(desk.copied(), expected);
            QCOMPARE(desk.toasts, QStringList({ownChange, u"Copied Markdown link"_s}));
        },
        {
            {"https://a.b:80/a?%1", u"Naïve [x] \\ %1"_s, "[Na\xc3\xafve [x] \\ %1](https://a.b:80/a?%1)"},
            {"https://a.b:80/a?%1", std::nullopt, "[a.b](https://a.b:80/a?%1)"},
            {"mailto:a@b.c", std::nullopt, "[mailto:a@b.c](mailto:a@b.c)"},
        });
}

void SmartActionRunnerTest::linksThatDoNotParse()
{
    Desk desk;
    for (const QString& link :
         {u""_s, u"http://[::1"_s, u"http://a.b:http/"_s, u"http://a.b/"_s + QString(200'000, u'a')})
        for (const Kind kind : {Kind::openURL, Kind::copyMarkdownLink})
            desk.run(kind, link);
    QCOMPARE(desk.toasts, QStringList(8, actionNotice));
    QCOMPARE(desk.workspace.opened, QStringList());
    QCOMPARE(desk.pages.links, QList<QUrl>());
}

void SmartActionRunnerTest::nothingIsWrittenOnceTheModelIsGone()
{
    Desk desk;
    {
        ViewModelFixture closed;
        desk.runner->perform({Kind::copyMarkdownLink, u"https://example.org/"_s}, closed.model);
    }
    desk.pages.finish(u"Title"_s);
    QCOMPARE(desk.pasteboard.writes.size(), 0);
}

/// Every action that the catalogue can offer has a symbol, and every symbol a drawing.
void SmartActionRunnerTest::everyActionHasItsDrawing()
{
    // Some of these offer nothing in one type, but together they offer the whole catalogue.
    QSet<QString> labels;
    for (const ClipType type : allClipTypes)
        for (const auto& content :
             {u"{}"_s, u"aGVsbG8="_s, u"%41"_s, u"1700000000"_s, u"a.e30.c"_s, u"https://a.b/?gclid=1"_s})
            for (const SmartAction& action : SmartActions::actions({{}, type, content, {}, {}, 0, false}))
                labels.insert(action.label);
    QCOMPARE(labels.size(), 26);
    for (const QString& label : std::as_const(labels)) {
        QVERIFY2(SmartActionSymbols::name(label) != u"doc.on.doc"_s, qPrintable(label));
        const QByteArray drawing = SmartActionSymbols::iconName(label).toLatin1();
        QVERIFY2(!tintedPixmap({QLatin1String(drawing)}, 1).isNull(), qPrintable(label));
    }
}

QTEST_MAIN(SmartActionRunnerTest)

#include "SmartActionRunnerTest.moc"
