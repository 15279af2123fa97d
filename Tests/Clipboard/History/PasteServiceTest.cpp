#include "PasteService.h"
#include "FakeKeystrokeSender.h"

#include <QTest>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

struct Fixture
{
    FakeKeystrokeSender keystrokes;
    QStringList toasts;
    std::unique_ptr<PasteService> service =
        std::make_unique<PasteService>(keystrokes, [this](const QString& text) { toasts.append(text); });

    Fixture() { keystrokes.finishesAtOnce = false; }
};

} // namespace

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
    Fixture f;
    for (const auto& [result, notice] :
         {std::pair(PasteResult::sent, u"Pasted “x”"_s), {PasteResult::notSent, u"Copied “x” — press ⌘V to paste"_s}}) {
        f.keystrokes.pastes = 0;
        f.toasts.clear();
        f.service->pasteAfterClose(u"“x”"_s);
        QCOMPARE(f.keystrokes.pastes, 0);
        QTRY_COMPARE(f.keystrokes.pastes, 1);
        QVERIFY(f.toasts.isEmpty()); // the key is still on its way
        f.keystrokes.finishPastes(result);
        QCOMPARE(f.toasts, QStringList{notice});
    }
}

void PasteServiceTest::leavesTheKeyToTheUserWithoutTrust()
{
    Fixture f;
    f.keystrokes.trusted = false;
    f.service->pasteAfterClose(u"“x”"_s);
    QCOMPARE(f.toasts, QStringList{u"Copied “x” — press ⌘V to paste"_s});
    QCOMPARE(f.keystrokes.trustRequests, 1);
    // The key of a later paste would come after that of this one.
    f.keystrokes.trusted = true;
    f.service->pasteAfterClose(u"“y”"_s);
    QTRY_VERIFY(f.keystrokes.pastes > 0);
    QCOMPARE(f.keystrokes.pastes, 1);
}

void PasteServiceTest::survivesAnAnswerAfterItsEnd()
{
    Fixture f;
    f.service->pasteAfterClose(u"“x”"_s);
    QTRY_COMPARE(f.keystrokes.pastes, 1);
    f.service.reset();
    f.keystrokes.finishPastes();
    QVERIFY(f.toasts.isEmpty());
}

QTEST_GUILESS_MAIN(PasteServiceTest)
#include "PasteServiceTest.moc"
