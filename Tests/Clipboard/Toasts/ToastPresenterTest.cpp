#include "ToastPresenter.h"
#include "Fakes.h"
#include "Motion.h"
#include "ReferencePicture.h"
#include "Theme.h"
#include "ToastView.h"

#include <QApplication>
#include <QPointer>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

class ToastPresenterTest final : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void standsAboveTheWorkAreasBottom();
    void signTellsFailures();
    void neverTakesFocusOrClicks();
    void newNoticeReplacesTheOldAtOnce();
    void goesByItself_data();
    void goesByItself();

private:
    FakeWindowSystem m_windows;
};

namespace {

int visibleToasts()
{
    int count = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets())
        count += qobject_cast<const ToastView*>(widget) != nullptr && widget->isVisible() ? 1 : 0;
    return count;
}

} // namespace

void ToastPresenterTest::init()
{
    Motion::setReduced(true);
    m_windows.compositing = true;
}

void ToastPresenterTest::standsAboveTheWorkAreasBottom()
{
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    for (const bool compositing : {true, false}) {
        m_windows.compositing = compositing;
        ToastPresenter presenter(m_windows);
        for (const QString& text : {u"Copied “hello”"_s, u"a very long notice "_s.repeated(200'000)}) {
            presenter.show(text);
            QVERIFY(presenter.current()->text().size() < 2000); // what nobody can read is not laid out
            const QRect card = presenter.current()->cardGeometry();
            QVERIFY(area.contains(card));
            QCOMPARE(card.bottom(), area.bottom() - 66);
            QVERIFY(std::abs(card.center().x() - area.center().x()) <= 1);
        }
    }
}

void ToastPresenterTest::signTellsFailures()
{
    for (const bool isFailure : {false, true}) {
        const ClipboardCore::ToastText text(u"Copied “hello”"_s);
        ToastView toast(isFailure ? ClipboardCore::ToastText::failure(u"File not found"_s) : text, isFailure);
        toast.placeIn({0, 0, 1280, 800});
        expectPicture(isFailure ? u"toast, failure"_s : u"toast"_s, toast);
    }
}

void ToastPresenterTest::neverTakesFocusOrClicks()
{
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other, patience));
    ToastPresenter presenter(m_windows);
    presenter.showUntilNext(u"Copied “hello”"_s);
    QVERIFY(QTest::qWaitForWindowExposed(presenter.current()->windowHandle(), patience));
    QVERIFY(other.isActiveWindow());
    const auto flags = Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus | Qt::ToolTip;
    QCOMPARE(presenter.current()->windowFlags() & flags, flags);
}

void ToastPresenterTest::newNoticeReplacesTheOldAtOnce()
{
    ToastPresenter presenter(m_windows);
    presenter.show(u"first"_s);
    const QPointer<const ToastView> first = presenter.current();
    const auto* hiding = presenter.findChild<QTimer*>();
    QVERIFY(hiding->isActive());
    presenter.showUntilNext(u"second"_s);
    QVERIFY(first.isNull());
    QCOMPARE(visibleToasts(), 1);
    QCOMPARE(presenter.current()->text(), u"second"_s);
    QVERIFY(!hiding->isActive()); // neither its own time is up ever, nor that of the first
    presenter.show(u"third"_s);
    QVERIFY(hiding->isActive());
}

void ToastPresenterTest::goesByItself_data()
{
    QTest::addColumn<bool>("fades");
    QTest::newRow("at once") << false;
    QTest::newRow("fading where motion is welcome") << true;
}

void ToastPresenterTest::goesByItself()
{
    QFETCH(const bool, fades);
    Motion::setReduced(!fades);
    ToastPresenter presenter(m_windows);
    QSignalSpy hidden(&presenter, &ToastPresenter::hidden);
    presenter.show(u"first"_s);
    presenter.show(u"second"_s);
    QCOMPARE(presenter.current()->windowOpacity() < 1, fades);
    const QSignalSpy opacities(presenter.current()->windowHandle(), &QWindow::opacityChanged);
    QTRY_COMPARE(hidden.size(), 1);
    QCOMPARE(opacities.contains({1.0}), fades);
    QCOMPARE(presenter.current(), nullptr);
    QCOMPARE(visibleToasts(), 0);
}

QTEST_MAIN(ToastPresenterTest)

#include "ToastPresenterTest.moc"
