#include "StatusItemController.h"
#include "AboutDialog.h"
#include "ClearHistoryDialog.h"
#include "DarkMenu.h"
#include "Fakes.h"
#include "FloatingPanel.h"
#include "History/JSONHistoryStore.h"
#include "PanelFooter.h"
#include "ToastPresenter.h"
#include "ToastView.h"

#include <QApplication>
#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

/// The whole program but for its process, with the desktop faked.
struct Fixture
{
    QTemporaryDir folder;
    FakePasteboard* pasteboard = nullptr;
    FakeHotKeyGrabber* hotKey = nullptr;
    FakeKeystrokeSender* keystrokes = nullptr;
    std::unique_ptr<StatusItemController> controller;

    explicit Fixture(const QStringList& texts = {}, const QString& refusal = {})
    {
        JSONHistoryStore store(historyFile(), 500, 1000.0);
        for (const QString& text : texts)
            (void)store.add({QUuid::createUuid(), ClipType::text, text, {}, {}, currentTime(), false});
        (void)store.save();
        start(refusal);
    }
    void start(const QString& refusal)
    {
        Platform platform;
        auto fakePasteboard = std::make_unique<FakePasteboard>();
        auto fakeHotKey = std::make_unique<FakeHotKeyGrabber>();
        auto fakeKeystrokes = std::make_unique<FakeKeystrokeSender>();
        pasteboard = fakePasteboard.get();
        hotKey = fakeHotKey.get();
        keystrokes = fakeKeystrokes.get();
        pasteboard->copyTextFromOutside("there at the start");
        hotKey->refusal = refusal;
        platform.pasteboard = std::move(fakePasteboard);
        platform.hotKey = std::move(fakeHotKey);
        platform.keystrokes = std::move(fakeKeystrokes);
        platform.workspace = std::make_unique<FakeWorkspace>();
        platform.windows = std::make_unique<FakeWindowSystem>();
        platform.textRecognizer = std::make_unique<FakeTextRecognizer>();
        platform.linkMetadata = std::make_unique<FakeLinkMetadataProvider>();
        controller = std::make_unique<StatusItemController>(std::move(platform), folder.path());
    }

    [[nodiscard]] QString historyFile() const { return folder.filePath(u"history.json"_s); }
    [[nodiscard]] QStringList saved() const
    {
        controller->flush();
        QStringList texts;
        const JSONHistoryStore store(historyFile(), 500, 1000.0);
        for (const ClipItem& item : store.items())
            texts.append(item.content.toString());
        return texts;
    }
    template <typename Window>
    [[nodiscard]] static Window* window()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<Window*>(widget))
                return found;
        }
        return nullptr;
    }
    static void chooseFromMenu(const QString& text)
    {
        for (QAction* action : window<DarkMenu>()->actions()) {
            if (action->text() == text)
                action->trigger();
        }
    }
    [[nodiscard]] static bool panelIsOpen()
    {
        const auto* panel = window<FloatingPanel>();
        return panel && panel->isVisible();
    }
};

} // namespace

class StatusItemControllerTest final : public QObject
{
    Q_OBJECT
private slots:
    void recordsWhatComesAfterTheStart();
    void opensAndClosesByTheHotKey();
    void tellsWhyTheHotKeyFails();
    void pastesWithoutCapturingIt();
    void opensAfterTheLaunchWhenAsked();
    void clearsTheHistoryOnConsent_data();
    void clearsTheHistoryOnConsent();
    void tellsOfItself();
    void sweepsPicturesNobodyKnows_data();
    void sweepsPicturesNobodyKnows();
    void storesPendingPicturesAtTheEnd();
};

void StatusItemControllerTest::recordsWhatComesAfterTheStart()
{
    const Fixture f({u"old"_s});
    f.pasteboard->copyTextFromOutside("new");
    QCOMPARE(f.saved(), (QStringList{u"new"_s, u"old"_s}));
}

void StatusItemControllerTest::opensAndClosesByTheHotKey()
{
    const Fixture f({u"old"_s});
    QCOMPARE(f.hotKey->grabs, 1);
    for (const bool open : {true, false, true}) {
        f.hotKey->press();
        QCOMPARE(Fixture::panelIsOpen(), open);
    }
}

void StatusItemControllerTest::tellsWhyTheHotKeyFails()
{
    const QString reason = u"Super+Shift+V is in use by another program."_s;
    QTest::ignoreMessage(QtWarningMsg, reason.toUtf8().constData());
    const Fixture f({}, reason);
    QVERIFY(ToastPresenter::shared().current());
    QCOMPARE(ToastPresenter::shared().current()->text(), reason);
    f.controller->show();
    const auto* footer = Fixture::window<FloatingPanel>()->findChild<PanelFooter*>();
    QVERIFY2(footer->accessibleName().startsWith(reason), qPrintable(footer->accessibleName()));
}

void StatusItemControllerTest::pastesWithoutCapturingIt()
{
    const Fixture f({u"older"_s, u"newer"_s});
    f.hotKey->press();
    QTest::keyClick(Fixture::window<FloatingPanel>()->windowHandle(), Qt::Key_Down);
    QTest::keyClick(Fixture::window<FloatingPanel>()->windowHandle(), Qt::Key_Return);
    QVERIFY(!Fixture::panelIsOpen());
    QCOMPARE(f.pasteboard->writes.size(), 1);
    emit f.pasteboard->changed(); // a late notification
    QTRY_COMPARE(f.keystrokes->pastes, 1);
    QCOMPARE(f.saved(), (QStringList{u"older"_s, u"newer"_s}));
}

void StatusItemControllerTest::opensAfterTheLaunchWhenAsked()
{
    qputenv("CLIPBOARD_SHOW_PANEL", "");
    const Fixture f;
    qunsetenv("CLIPBOARD_SHOW_PANEL");
    QVERIFY(!Fixture::panelIsOpen());
    QTRY_VERIFY_WITH_TIMEOUT(Fixture::panelIsOpen(), 2000);
}

void StatusItemControllerTest::clearsTheHistoryOnConsent_data()
{
    QTest::addColumn<bool>("consent");
    QTest::newRow("Clear") << true;
    QTest::newRow("Cancel") << false;
}

void StatusItemControllerTest::clearsTheHistoryOnConsent()
{
    QFETCH(bool, consent);
    const Fixture f({u"a"_s, u"b"_s});
    Fixture::chooseFromMenu(u"Clear History…"_s);
    auto* dialog = Fixture::window<ClearHistoryDialog>();
    if (dialog == nullptr)
        QFAIL("no question is asked");
    QVERIFY(dialog->isVisible());
    QCOMPARE(f.saved().size(), 2); // nothing happens before the answer
    if (consent)
        dialog->accept();
    else
        dialog->reject();
    QCOMPARE(f.saved().size(), consent ? 0 : 2);
    QTRY_VERIFY(!Fixture::window<ClearHistoryDialog>());
}

void StatusItemControllerTest::tellsOfItself()
{
    const Fixture f;
    Fixture::chooseFromMenu(u"About Tessaly"_s);
    const auto* dialog = Fixture::window<AboutDialog>();
    QVERIFY(dialog && dialog->isVisible());
}

void StatusItemControllerTest::sweepsPicturesNobodyKnows_data()
{
    QTest::addColumn<QByteArray>("history");
    QTest::newRow("as the history knows all of them") << "[]"_ba;
    QTest::newRow("but not when it cannot be read, and says so once") << "["_ba;
}

void StatusItemControllerTest::sweepsPicturesNobodyKnows()
{
    QFETCH(QByteArray, history);
    const bool isReadable = history == "[]";
    Fixture f;
    f.controller.reset();
    const auto write = [&f](const QString& name, const QByteArray& content) {
        QFile file(f.folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-120), QFile::FileModificationTime));
    };
    QVERIFY(QDir(f.folder.path()).mkpath(u"images"_s));
    write(u"images/orphan.png"_s, {});
    write(u"history.json"_s, history);
    for (const QString& notice : {u"The history could not be read; it is kept as history.json.bad. "_s, QString()}) {
        f.start({});
        f.controller->show();
        const auto* footer = Fixture::window<FloatingPanel>()->findChild<PanelFooter*>();
        QCOMPARE(footer->accessibleName(), (isReadable ? QString() : notice) + u"0 item"_s);
        f.controller->togglePanel();
        f.controller->show();
        QCOMPARE(footer->accessibleName(), u"0 item"_s);
        write(u"history.json"_s, "[]");
        f.controller.reset(); // ends the sweep, if there is one
        if (isReadable)       // in the next run as well: the file that is kept may name the picture
            break;
        write(u"history.json.bad"_s, history);
    }
    QCOMPARE(QFile::exists(f.folder.filePath(u"images/orphan.png"_s)), !isReadable);
}

void StatusItemControllerTest::storesPendingPicturesAtTheEnd()
{
    const Fixture f;
    QImage image(1500, 1500, QImage::Format_RGB32);
    image.fill(Qt::cyan);
    FakePasteboard::Content content;
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(image.save(&buffer, "png"));
    content.png = png;
    f.pasteboard->copyFromOutside(content);
    const QStringList saved = f.saved();
    QCOMPARE(saved.size(), 1);
    QCOMPARE(QImage(saved.first()), image);
}

QTEST_MAIN(StatusItemControllerTest)
#include "StatusItemControllerTest.moc"
