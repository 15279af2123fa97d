#include "AboutDialog.h"
#include "ClearHistoryDialog.h"
#include "DialogButton.h"
#include "Theme.h"

#include <QAbstractButton>
#include <QSignalSpy>
#include <QTest>

using namespace Clipboard;

class DialogCardTest final : public QObject
{
    Q_OBJECT
private slots:
    void keysAnswer_data();
    void keysAnswer();
    void clickAnswers();
    void ringMarksWhatReturnDoes();
    void cornersFollowTheCompositor();
};

namespace {

void open(QDialog& dialog)
{
    dialog.open();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
}

} // namespace

void DialogCardTest::keysAnswer_data()
{
    QTest::addColumn<QList<Qt::Key>>("keys");
    QTest::addColumn<int>("result");
    QTest::newRow("return clears") << QList{Qt::Key_Return} << int(QDialog::Accepted);
    QTest::newRow("keypad enter clears") << QList{Qt::Key_Enter} << int(QDialog::Accepted);
    QTest::newRow("escape cancels") << QList{Qt::Key_Escape} << int(QDialog::Rejected);
    QTest::newRow("down, return cancels") << QList{Qt::Key_Down, Qt::Key_Return} << int(QDialog::Rejected);
    QTest::newRow("tab, return cancels") << QList{Qt::Key_Tab, Qt::Key_Return} << int(QDialog::Rejected);
    QTest::newRow("up wraps to the last") << QList{Qt::Key_Up, Qt::Key_Return} << int(QDialog::Rejected);
    QTest::newRow("down twice wraps") << QList{Qt::Key_Down, Qt::Key_Down, Qt::Key_Return} << int(QDialog::Accepted);
}

void DialogCardTest::keysAnswer()
{
    QFETCH(QList<Qt::Key>, keys);
    QFETCH(int, result);
    ClearHistoryDialog dialog(true);
    QSignalSpy finished(&dialog, &QDialog::finished);
    open(dialog);
    for (const Qt::Key key : keys)
        QTest::keyClick(dialog.windowHandle(), key);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().first().toInt(), result);
}

void DialogCardTest::clickAnswers()
{
    ClearHistoryDialog dialog(true);
    QSignalSpy accepted(&dialog, &QDialog::accepted);
    open(dialog);
    QTest::mouseClick(dialog.findChildren<DialogButton*>().first(), Qt::LeftButton);
    QCOMPARE(accepted.size(), 1);
}

void DialogCardTest::ringMarksWhatReturnDoes()
{
    ClearHistoryDialog dialog(true);
    open(dialog);
    const auto buttons = dialog.findChildren<DialogButton*>();
    const auto colorAboveButton = [&](const DialogButton* button) {
        const QRect control = button->controlRectIn(&dialog);
        return dialog.grab().toImage().pixelColor(control.center().x(), control.top() - 2);
    };
    QCOMPARE(colorAboveButton(buttons.at(0)), QColor(Theme::accent));
    QCOMPARE(colorAboveButton(buttons.at(1)), QColor(Theme::raised));
    QTest::keyClick(dialog.windowHandle(), Qt::Key_Down);
    QCOMPARE(colorAboveButton(buttons.at(0)), QColor(Theme::raised));
    QCOMPARE(colorAboveButton(buttons.at(1)), QColor(Theme::accent));
}

void DialogCardTest::cornersFollowTheCompositor()
{
    AboutDialog composited(true);
    AboutDialog plain(false);
    QCOMPARE(plain.size().width(), 320);
    QVERIFY(composited.size().width() > plain.size().width());
    const QImage square = plain.grab().toImage();
    QCOMPARE(square.pixelColor(0, 0), QColor(Theme::outline));
    QCOMPARE(square.pixelColor(1, 1), QColor(Theme::raised));
    QCOMPARE(composited.grab().toImage().convertToFormat(QImage::Format_ARGB32).pixelColor(0, 0).alpha(), 0);
}

QTEST_MAIN(DialogCardTest)

#include "DialogCardTest.moc"
