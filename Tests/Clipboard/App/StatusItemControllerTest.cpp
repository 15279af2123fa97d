#include "StatusItemController.h"
#include "AboutDialog.h"
#include "ClearHistoryDialog.h"
#include "DarkMenu.h"
#include "EmptyView.h"
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
#include <QSettings>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

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
        platform.workerCheck = std::make_unique<FakeWorkerCheck>();
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
        auto* menu = window<DarkMenu>();
        menu->popup({0, 0});
        for (QAction* action : menu->actions()) {
            if (action->text() == text)
                return QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        }
    }
    [[nodiscard]] QSystemTrayIcon& tray() const { return *controller->findChild<QSystemTrayIcon*>(); }
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
    void opensAndCloses();
    void tellsWhatDoesNotWork();
    void pastesWithoutCapturingIt();
    void opensAfterTheLaunchWhenAsked();
    void answersTheMenu();
    void storesAPictureAtTheEnd();
    void sweepsPicturesNobodyKnows();
    void quitsFromTheMenu();
    void welcomesOnce();
};

void StatusItemControllerTest::opensAndCloses()
{
    const Fixture f({u"old"_s});
    QTRY_VERIFY(!f.tray().icon().isNull());
    const auto shown = [&f] { return f.tray().icon().pixmap(22).toImage(); };
    const QImage resting = shown();
    QImage nothing(resting.size(), resting.format());
    nothing.fill(Qt::transparent);
    QVERIFY(resting != nothing);
    const auto click = [&](QSystemTrayIcon::ActivationReason reason, bool isOpenThen) {
        emit f.tray().activated(reason);
        QCOMPARE(Fixture::panelIsOpen(), isOpenThen);
        QTRY_COMPARE(shown() != resting, isOpenThen);
    };
    click(QSystemTrayIcon::Trigger, true);
    click(QSystemTrayIcon::MiddleClick, true);
    click(QSystemTrayIcon::DoubleClick, false);
    click(QSystemTrayIcon::Context, false);
    f.hotKey->press();
    QVERIFY(Fixture::panelIsOpen());
    f.hotKey->press();
    QVERIFY(!Fixture::panelIsOpen());
    f.hotKey->press();
    Fixture::window<DarkMenu>()->popup({0, 0});
    QVERIFY(!Fixture::panelIsOpen());
}

void StatusItemControllerTest::tellsWhatDoesNotWork()
{
    const QString reason = u"Super+Shift+V is in use by another program."_s;
    QTest::ignoreMessage(QtWarningMsg, reason.toUtf8().constData());
    const Fixture f({}, reason);
    QVERIFY(ToastPresenter::shared().current());
    QCOMPARE(ToastPresenter::shared().current()->text(), reason);
    QCOMPARE(Fixture::window<DarkMenu>()->actions().first()->text(), reason);
    const QSignalSpy told(&ToastPresenter::shared(), &ToastPresenter::shown);
    emit f.hotKey->failed(reason); // as at every change of the keyboard
    QCOMPARE(told.size(), 0);
    f.controller->show();
    const auto* footer = Fixture::window<FloatingPanel>()->findChild<PanelFooter*>();
    QVERIFY2(footer->accessibleName().startsWith(reason), qPrintable(footer->accessibleName()));
    for (const QString& clipboard : {u"There is no clipboard."_s, QString()}) {
        f.pasteboard->reason = clipboard;
        emit f.pasteboard->availabilityChanged();
        const qsizetype lines = clipboard.isEmpty() ? 2 : 3;
        QCOMPARE(f.tray().toolTip().split(u'\n').size(), lines);
        QVERIFY(f.tray().toolTip().contains(clipboard));
    }
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
    f.pasteboard->copyTextFromOutside("new");
    QCOMPARE(f.saved(), (QStringList{u"new"_s, u"older"_s, u"newer"_s}));
}

void StatusItemControllerTest::opensAfterTheLaunchWhenAsked()
{
    qputenv("CLIPBOARD_SHOW_PANEL", "");
    const Fixture f;
    qunsetenv("CLIPBOARD_SHOW_PANEL");
    QVERIFY(!Fixture::panelIsOpen());
    QTRY_VERIFY(Fixture::panelIsOpen());
}

void StatusItemControllerTest::answersTheMenu()
{
    const Fixture f({u"a"_s, u"b"_s});
    Fixture::chooseFromMenu(u"About Tessaly"_s);
    const auto* about = Fixture::window<AboutDialog>();
    QVERIFY(about && about->isVisible());
    for (const auto answer : {&QDialog::reject, &QDialog::accept}) {
        Fixture::chooseFromMenu(u"Clear History…"_s);
        auto* question = Fixture::window<ClearHistoryDialog>();
        if (question == nullptr)
            QFAIL("no question is asked");
        QVERIFY(question->isVisible());
        QCOMPARE(f.saved().size(), 2); // nothing happens before the answer
        (question->*answer)();
        QCOMPARE(f.saved().size(), answer == &QDialog::reject ? 2 : 0);
        QTRY_VERIFY(!Fixture::window<ClearHistoryDialog>());
    }
}

/// But not while the history cannot be read, nor in the next run: the file that is kept may name the picture.
void StatusItemControllerTest::sweepsPicturesNobodyKnows()
{
    Fixture f;
    f.controller.reset();
    const auto write = [&f](const QString& name, const QByteArray& content) {
        QFile file(f.folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-120), QFile::FileModificationTime));
    };
    const QString orphan = f.folder.filePath(u"images/orphan.png"_s);
    QVERIFY(QDir(f.folder.path()).mkpath(u"images"_s));
    write(u"images/orphan.png"_s, {});
    write(u"history.json"_s, "[");
    for (const QString& notice : {u"The history could not be read; it is kept as history.json.bad. "_s, QString()}) {
        f.start({});
        f.controller->show();
        const auto* footer = Fixture::window<FloatingPanel>()->findChild<PanelFooter*>();
        QCOMPARE(footer->accessibleName(), notice + u"0 item"_s);
        f.controller->togglePanel();
        f.controller->show();
        QCOMPARE(footer->accessibleName(), u"0 item"_s); // it is told once
        f.controller.reset();                            // ends the sweep, if there is one
        write(u"history.json"_s, "[]");
        write(u"history.json.bad"_s, "[");
    }
    QVERIFY(QFile::exists(orphan));
    QVERIFY(QFile::remove(f.historyFile() + u".bad"_s));
    f.start({});
    f.controller.reset();
    QVERIFY(!QFile::exists(orphan));
}

void StatusItemControllerTest::storesAPictureAtTheEnd()
{
    const Fixture f({u"text"_s});
    QImage image(1500, 1500, QImage::Format_RGB32);
    image.fill(Qt::cyan);
    FakePasteboard::Content content;
    QBuffer png(&content.png.emplace());
    QVERIFY(png.open(QIODevice::WriteOnly) && image.save(&png, "png"));
    f.pasteboard->copyFromOutside(content);
    QCOMPARE(QImage(f.saved().first()), image); // whatever is pending
}

void StatusItemControllerTest::quitsFromTheMenu()
{
    const Fixture f;
    Fixture::window<DarkMenu>()->popup({0, 0});
    QTimer::singleShot(0, [] { QTest::keyClick(Fixture::window<DarkMenu>(), Qt::Key_Q, Qt::ControlModifier); });
    QTimer::singleShot(patience, qApp, [] { QCoreApplication::exit(1); }); // it did not
    QCOMPARE(QCoreApplication::exec(), 0);
}

void StatusItemControllerTest::welcomesOnce()
{
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QCoreApplication::setOrganizationName(u"Tessaly"_s);
    const auto said = [](const QString& text) {
        const auto* panel = Fixture::window<FloatingPanel>();
        const auto* empty = panel ? panel->findChild<EmptyView*>() : nullptr;
        return empty && empty->accessibleDescription().contains(text);
    };
    Fixture f;
    QFile::remove(f.historyFile());
    f.controller.reset();
    f.start({});
    QTRY_VERIFY(Fixture::panelIsOpen());
    QVERIFY(said(u"Super+Shift+V opens this window"_s) && said(u"passwords"_s));
    f.hotKey->press();
    f.hotKey->press();
    QVERIFY(Fixture::panelIsOpen() && !said(u"passwords"_s));
    QVERIFY(QSettings().contains(u"welcomed"_s));
    QCoreApplication::setOrganizationName({});
}

QTEST_MAIN(StatusItemControllerTest)
#include "StatusItemControllerTest.moc"
