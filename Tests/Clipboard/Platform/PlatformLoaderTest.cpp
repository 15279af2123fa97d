#include "PlatformLoader.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

/// A session that offers nothing: every port is there all the same and says why it cannot serve.
class PlatformLoaderTest final : public QObject
{
    Q_OBJECT
private slots:
    void everyPortIsThereWithItsReason();
};

void PlatformLoaderTest::everyPortIsThereWithItsReason()
{
    const Platform platform = loadPlatform();
    QVERIFY(platform.pasteboard->unavailableReason().endsWith(u"there is no X11 display."_s));
    QVERIFY(platform.keystrokes->unavailableReason().startsWith(u"No key can be sent in this session: "_s));
    QVERIFY(!platform.keystrokes->isTrusted());
    QVERIFY(!platform.workspace->frontmostApplication());
    QSignalSpy failed(platform.hotKey.get(), &HotKeyGrabber::failed);
    platform.hotKey->grab();
    QCOMPARE(failed.size(), 1);

    bool isDone = false;
    platform.keystrokes->sendPaste([&](PasteResult result) { isDone = result == PasteResult::notSent; });
    QVERIFY(!isDone);
    QTRY_VERIFY(isDone);

    QVERIFY(!platform.pasteboard->setPNGFile(u"/does/not/exist.png"_s));
    QVERIFY(platform.pasteboard->setPNGFile(QCoreApplication::applicationFilePath()));
}

QTEST_MAIN(PlatformLoaderTest)
#include "PlatformLoaderTest.moc"
