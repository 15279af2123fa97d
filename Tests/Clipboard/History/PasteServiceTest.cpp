#include "PasteService.h"
#include "FakeKeystrokeSender.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

class PasteServiceTest final : public QObject
{
    Q_OBJECT
private slots:
    void waitsForThePanelThenSendsTheKey();
    void leavesTheKeyToTheUserWithoutTrust();
    void survivesAnAnswerAfterItsEnd();
};

void PasteServiceTest::waitsForThePanelThenSendsTheKey()
{
    FakeKeystrokeSender keystrokes;
    keystrokes.finishesAtOnce = false;
    QStringList toasts;
    PasteService service(keystrokes, [&](const QString& text) { toasts.append(text); });

    QElapsedTimer elapsed;
    elapsed.start();
    service.pasteAfterClose(u"“x”"_s);
    QCOMPARE(keystrokes.pastes, 0);
    QTRY_COMPARE(keystrokes.pastes, 1);
    QVERIFY(elapsed.elapsed() >= 79);
    QVERIFY(toasts.isEmpty()); // the key is still on its way
    keystrokes.finishPastes();
    QCOMPARE(toasts, QStringList{u"Pasted “x”"_s});
}

void PasteServiceTest::leavesTheKeyToTheUserWithoutTrust()
{
    FakeKeystrokeSender keystrokes;
    keystrokes.trusted = false;
    QStringList toasts;
    PasteService service(keystrokes, [&](const QString& text) { toasts.append(text); });

    service.pasteAfterClose(u"“x”"_s);
    QCOMPARE(toasts, QStringList{u"Copied “x” — press ⌘V to paste"_s});
    QCOMPARE(keystrokes.trustRequests, 1);
    QTest::qWait(120);
    QCOMPARE(keystrokes.pastes, 0);
}

void PasteServiceTest::survivesAnAnswerAfterItsEnd()
{
    FakeKeystrokeSender keystrokes;
    keystrokes.finishesAtOnce = false;
    QStringList toasts;
    auto service = std::make_unique<PasteService>(keystrokes, [&](const QString& text) { toasts.append(text); });
    service->pasteAfterClose(u"“x”"_s);
    QTRY_COMPARE(keystrokes.pastes, 1);
    service.reset();
    keystrokes.finishPastes();
    QVERIFY(toasts.isEmpty());
}

QTEST_GUILESS_MAIN(PasteServiceTest)
#include "PasteServiceTest.moc"
