#include "ClearHistoryDialog.h"
#include "DialogButton.h"
#include "ReferencePicture.h"

#include <QKeySequence>
#include <QSignalSpy>
#include <QTest>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

class DialogCardTest final : public QObject
{
    Q_OBJECT
private slots:
    void answers_data();
    void answers();
};

void DialogCardTest::answers_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<int>("marked"); // the button with the ring before the last key
    QTest::addColumn<bool>("isAccepted");
    const auto row = [](const QString& keys, int marked, bool isAccepted) {
        QTest::newRow(qPrintable(keys)) << keys << marked << isAccepted;
    };
    row(u"Return"_s, 0, true);
    row(u"Enter"_s, 0, true);
    row(u"Escape"_s, 0, false);
    row(u"Down Return"_s, 1, false);
    row(u"Tab Return"_s, 1, false);
    row(u"Up Return"_s, 1, false); // around the end
    row(u"Down Down Return"_s, 0, true);
    row(QString(), 0, true); // but a click
}

void DialogCardTest::answers()
{
    QFETCH(const QString, keys);
    QFETCH(const int, marked);
    QFETCH(const bool, isAccepted);
    ClearHistoryDialog dialog(keys.size() % 2 == 0);
    QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.open();
    QVERIFY(QTest::qWaitForWindowActive(&dialog, patience));
    QStringList chords = keys.split(u' ');
    const QString last = chords.takeLast();
    const auto press = [&dialog](const QString& key) {
        QTest::keyClick(dialog.windowHandle(), QKeySequence(key)[0].key());
    };
    std::ranges::for_each(chords, press);
    const auto buttons = dialog.findChildren<DialogButton*>();
    const bool isComposited = keys.size() % 2 == 0;
    expectPicture(u"dialog, button %1%2"_s.arg(marked).arg(isComposited ? QString() : u", plain"_s), dialog);
    if (last.isEmpty())
        QTest::mouseClick(buttons.first(), Qt::LeftButton);
    else
        press(last);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().first().toInt(), int(isAccepted ? QDialog::Accepted : QDialog::Rejected));
}

QTEST_MAIN(DialogCardTest)

#include "DialogCardTest.moc"
