#include "ForeignClient.h"
#include "PlatformLoader.h"
#include "VirtualSession.h"
#include "X11HotKeyGrabber.h"
#include "X11Session.h"

#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QRasterWindow>
#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <memory>
#include <thread>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

// Key codes, on a keyboard of the usual kind.
constexpr xcb_keycode_t latinV = 55;
constexpr xcb_keycode_t dvorakV = 60;

/// True when another program could have the hot key on that key now; it does not keep it.
bool takeHotKey(xcb_connection_t* other, xcb_keycode_t key)
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
    const uint16_t modifiers = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_4;
    const auto cookie = xcb_grab_key_checked(other, 1, root, modifiers, key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const X11::XcbPointer<xcb_generic_error_t> error(xcb_request_check(other, cookie));
    if (!error)
        xcb_ungrab_key(other, key, root, modifiers);
    return !error;
}

} // namespace

/// Hot key, focus, keys and applications in a session with a window manager and real programs.
class X11DesktopTest final : public QObject
{
    Q_OBJECT
public:
    explicit X11DesktopTest(VirtualSession& session)
        : m_session(session)
    {
    }

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void hotKeyWhateverTheLocks_data();
    void hotKeyWhateverTheLocks();
    void heldHotKeyCountsOnce();
    void hotKeySurvivesALayoutChange();
    void hotKeyIsNotLetGoForAnotherKeyboard();
    void hotKeyWithoutLatinLetters();
    void hotKeyOfAnotherProgram();
    void frontmostApplicationIsNotOurs();
    void unknownApplicationGoesByItsClass();
    void pastesIntoNoOtherWindow_data();
    void pastesIntoNoOtherWindow();
    void pasteIntoXterm_data();
    void pasteIntoXterm();
    void utilityWindowStaysOutOfTaskBars();
    void compositorComesAndGoes();

private:
    void xdotool(const QString& arguments);
    /// An xterm that writes what is typed or pasted into the file, line by line.
    xcb_window_t startXterm(const QString& windowClass, const QString& file = u"typed"_s);
    [[nodiscard]] bool isInFront(xcb_window_t window);
    [[nodiscard]] bool waitForActive(xcb_window_t window);
    /// Handles what the server has said so far.
    void catchUp();
    /// Waits until the window manager has done what it was asked for so far.
    [[nodiscard]] bool hasWindowManagerCaughtUp();
    [[nodiscard]] QByteArray typed(const QString& file = u"typed"_s) const;
    [[nodiscard]] Workspace::Application frontmost() const
    {
        return m_platform.workspace->frontmostApplication().value_or(Workspace::Application());
    }
    /// What the panel does: shows a window over the one in front, which is remembered.
    void showPanel();
    void hidePanel();
    /// What has become of a paste; nothing if it never ended.
    [[nodiscard]] std::optional<PasteResult> paste();

    VirtualSession& m_session;
    Platform m_platform;
    std::shared_ptr<X11::X11Session> m_observer;
    QRasterWindow m_panel;
    QList<QProcess*> m_programs;
};

void X11DesktopTest::initTestCase()
{
    // The window manager announces itself before it manages windows.
    const auto observer = X11::X11Session::open();
    QVERIFY(observer);
    QTRY_VERIFY(observer->hasActivation());
}

void X11DesktopTest::init()
{
    m_observer = X11::X11Session::open();
    QVERIFY(m_observer);
    m_platform = loadPlatform();
    m_panel.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    m_panel.setGeometry(600, 300, 200, 100);
    m_panel.create();
    m_platform.windows->prepareUtilityWindow(&m_panel);
}

void X11DesktopTest::cleanup()
{
    m_panel.hide();
    m_panel.destroy();
    for (QProcess* program : std::as_const(m_programs))
        m_session.kill(*program);
    m_programs.clear();
    m_platform = {};
    m_observer.reset();
    m_session.run(u"setxkbmap"_s, {u"us"_s});
    for (const QString& file : {u"typed"_s, u"second"_s})
        QFile::remove(m_session.homePath(file));
}

void X11DesktopTest::xdotool(const QString& arguments)
{
    QCOMPARE(m_session.run(u"xdotool"_s, arguments.split(u' ')).exitCode, 0);
}

xcb_window_t X11DesktopTest::startXterm(const QString& windowClass, const QString& file)
{
    const QString command = u"cat > %1"_s.arg(m_session.homePath(file));
    m_programs.append(&m_session.start(
        u"xterm"_s, {u"-T"_s, windowClass, u"-class"_s, windowClass, u"-e"_s, u"sh"_s, u"-c"_s, command}));
    xcb_window_t window = XCB_WINDOW_NONE;
    const auto isOpen = [&] {
        for (const Desktop::Window& candidate : m_session.desktop().windowsOf("xterm"))
            window = candidate.title == windowClass ? candidate.id : window;
        return window != XCB_WINDOW_NONE && QFile::exists(m_session.homePath(file));
    };
    if (!QTest::qWaitFor(isOpen, VirtualSession::defaultTimeout))
        return XCB_WINDOW_NONE;
    if (!isInFront(window))
        m_observer->activate(window); // it is for the window manager whether a new window gets the keyboard
    return waitForActive(window) ? window : xcb_window_t{XCB_WINDOW_NONE};
}

/// The server gives the ids of closed windows out again, and the window manager may still call the old one active when
/// the new one is not yet shown. The focus is the server's own knowledge.
bool X11DesktopTest::isInFront(xcb_window_t window)
{
    return window != XCB_WINDOW_NONE && m_observer->activeWindow() == window && m_observer->focusWindow() == window;
}

bool X11DesktopTest::waitForActive(xcb_window_t window)
{
    return QTest::qWaitFor([&] { return isInFront(window); }, 20'000);
}

void X11DesktopTest::catchUp()
{
    m_observer->connection().synchronize();
    QCoreApplication::processEvents();
}

bool X11DesktopTest::hasWindowManagerCaughtUp()
{
    auto& connection = m_observer->connection();
    const xcb_window_t window = connection.createHiddenWindow(0);
    const xcb_atom_t extents = connection.atom("_NET_FRAME_EXTENTS");
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = window;
    request.type = connection.atom("_NET_REQUEST_FRAME_EXTENTS");
    const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
    xcb_send_event(connection.get(), 0, connection.root(), mask, reinterpret_cast<const char*>(&request));
    connection.flush();
    return QTest::qWaitFor([&] { return !connection.words(window, extents, XCB_ATOM_CARDINAL, 4).empty(); }, 20'000);
}

QByteArray X11DesktopTest::typed(const QString& name) const
{
    QFile file(m_session.homePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void X11DesktopTest::showPanel()
{
    m_platform.windows->rememberFrontWindow();
    m_panel.show();
    m_platform.windows->activate(&m_panel);
    QVERIFY(waitForActive(static_cast<xcb_window_t>(m_panel.winId())));
}

void X11DesktopTest::hidePanel()
{
    m_panel.hide();
    m_platform.windows->restoreFrontWindow();
}

std::optional<PasteResult> X11DesktopTest::paste()
{
    std::optional<PasteResult> result;
    m_platform.keystrokes->sendPaste([&](PasteResult ended) { result = ended; });
    const bool isEarly = result.has_value(); // the caller was kept waiting
    return QTest::qWaitFor([&] { return result.has_value(); }, 5000) && !isEarly ? result : std::nullopt;
}

void X11DesktopTest::hotKeyWhateverTheLocks_data()
{
    QTest::addColumn<QString>("lock");
    QTest::newRow("none") << QString();
    QTest::newRow("Caps Lock") << u"Caps_Lock"_s;
    QTest::newRow("Num Lock") << u"Num_Lock"_s;
}

void X11DesktopTest::hotKeyWhateverTheLocks()
{
    QFETCH(const QString, lock);
    QSignalSpy pressed(m_platform.hotKey.get(), &HotKeyGrabber::pressed);
    QSignalSpy failed(m_platform.hotKey.get(), &HotKeyGrabber::failed);
    m_platform.hotKey->grab();
    if (!lock.isEmpty())
        xdotool(u"key "_s + lock);
    xdotool(u"key super+shift+v"_s);
    QTRY_COMPARE(pressed.size(), 1);
    xdotool(u"key super+v"_s);
    xdotool(u"key shift+v"_s);
    if (!lock.isEmpty())
        xdotool(u"key "_s + lock);
    catchUp();
    QCOMPARE(pressed.size(), 1);
    xdotool(u"key super+shift+v"_s);
    QTRY_COMPARE(pressed.size(), 2);
    QCOMPARE(failed.size(), 0);
}

void X11DesktopTest::heldHotKeyCountsOnce()
{
    int presses = 0; // the key's own repetitions among them
    connect(m_observer.get(), &X11::X11Session::eventReceived, this,
            [&](const xcb_generic_event_t* event) { presses += int((event->response_type & 0x7fU) == XCB_KEY_PRESS); });
    X11HotKeyGrabber hotKey(m_observer);
    QSignalSpy pressed(&hotKey, &HotKeyGrabber::pressed);
    hotKey.grab();
    xdotool(u"keydown super keydown shift keydown v"_s);
    QTRY_VERIFY(presses > 3);
    QCOMPARE(pressed.size(), 1);
    xdotool(u"keyup v keyup shift keyup super"_s);
}

void X11DesktopTest::hotKeySurvivesALayoutChange()
{
    QSignalSpy pressed(m_platform.hotKey.get(), &HotKeyGrabber::pressed);
    m_platform.hotKey->grab();
    // V is on another key there.
    m_session.run(u"setxkbmap"_s, {u"us"_s, u"dvorak"_s});
    QTRY_VERIFY(!takeHotKey(m_observer->connection().get(), dvorakV));
    xdotool(u"key super+shift+v"_s);
    QTRY_COMPARE(pressed.size(), 1);
}

void X11DesktopTest::hotKeyIsNotLetGoForAnotherKeyboard()
{
    QSignalSpy pressed(m_platform.hotKey.get(), &HotKeyGrabber::pressed);
    m_platform.hotKey->grab();
    // Whoever wants it, too, gets it in the moment in which it is free.
    std::atomic<bool> isOver = false;
    std::atomic<bool> isTaken = false;
    std::jthread other([&, display = m_session.display().toLatin1()] {
        const auto connection = X11::XcbConnection::open(display);
        while (!isOver && !isTaken)
            isTaken = takeHotKey(connection->get(), latinV);
    });
    for (int round = 0; round < 20 && !isTaken; ++round) {
        m_session.run(u"xmodmap"_s, {u"-e"_s, u"keycode 248 = F24"_s}); // tells every program that the keyboard changed
        catchUp();
    }
    xdotool(u"key super+shift+v"_s);
    const bool came = QTest::qWaitFor([&] { return isTaken || pressed.size() == 1; }, 20'000);
    isOver = true;
    QVERIFY(came && !isTaken);
}

void X11DesktopTest::hotKeyWithoutLatinLetters()
{
    QSignalSpy pressed(m_platform.hotKey.get(), &HotKeyGrabber::pressed);
    m_session.run(u"setxkbmap"_s, {u"ru"_s});
    m_platform.hotKey->grab();
    xdotool(u"keydown super keydown shift key 55 keyup shift keyup super"_s);
    QTRY_COMPARE(pressed.size(), 1);
}

void X11DesktopTest::hotKeyOfAnotherProgram()
{
    m_platform.hotKey->grab();
    auto other = loadPlatform();
    QSignalSpy failed(other.hotKey.get(), &HotKeyGrabber::failed);
    QTest::ignoreMessage(QtWarningMsg, "Super+Shift+V is in use by another program.");
    other.hotKey->grab();
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed.first().first().toString(), u"Super+Shift+V is in use by another program."_s);

    // What could be had is not kept: nothing of the key is ours.
    m_platform.hotKey.reset();
    auto third = loadPlatform();
    QSignalSpy pressed(third.hotKey.get(), &HotKeyGrabber::pressed);
    third.hotKey->grab();
    xdotool(u"key super+shift+v"_s);
    QTRY_COMPARE(pressed.size(), 1);
}

void X11DesktopTest::frontmostApplicationIsNotOurs()
{
    const auto window = startXterm(u"XTerm"_s);
    QVERIFY(window != XCB_WINDOW_NONE);
    QTRY_COMPARE(frontmost().bundleID, u"test-terminal"_s);
    // Also for a copy within the moment of the start, for which the applications are still being read.
    QCOMPARE(loadPlatform().workspace->frontmostApplication().value().bundleID, u"test-terminal"_s);
    QCOMPARE(frontmost().name, u"Terminal of the test"_s);
    QVERIFY(!m_platform.workspace->applicationIcon(u"test-terminal"_s).isNull());

    showPanel();
    catchUp();
    QCOMPARE(frontmost().bundleID, u"test-terminal"_s);
}

void X11DesktopTest::unknownApplicationGoesByItsClass()
{
    // A window that tells nothing of its process, only a class and an icon.
    auto& connection = m_observer->connection();
    const xcb_window_t window = xcb_generate_id(connection.get());
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const QByteArray windowClass("elsewhere\0Elsewhere\0", 20);
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<uint32_t>(windowClass.size()), windowClass.constData());
    const uint32_t icon[] = {1, 1, 0xff336699};
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, connection.atom("_NET_WM_ICON"),
                        XCB_ATOM_CARDINAL, 32, 3, icon);
    xcb_map_window(connection.get(), window);
    connection.flush();
    QVERIFY(waitForActive(window));

    QTRY_COMPARE(frontmost().name, u"Elsewhere"_s);
    QCOMPARE(frontmost().bundleID, u"Elsewhere"_s);
    QVERIFY(!m_platform.workspace->applicationIcon(u"Elsewhere"_s).isNull());
    QVERIFY(m_platform.workspace->applicationIcon(u"nothing.that.exists"_s).isNull());

    // Installed meanwhile, it is known when it comes to the front again.
    QFile entry(m_session.homePath(u".local/share/applications/elsewhere.desktop"_s));
    QVERIFY(entry.open(QIODevice::WriteOnly));
    entry.write("[Desktop Entry]\nType=Application\nName=Somewhere\nStartupWMClass=Elsewhere\n");
    entry.close();
    showPanel();
    hidePanel();
    QTRY_COMPARE(frontmost().name, u"Somewhere"_s);
}

void X11DesktopTest::pastesIntoNoOtherWindow_data()
{
    QTest::addColumn<bool>("isGone");
    QTest::newRow("the user has turned to another window") << false;
    QTest::newRow("the window has gone, and another one gets the focus") << true;
}

void X11DesktopTest::pastesIntoNoOtherWindow()
{
    QFETCH(const bool, isGone);
    const auto first = startXterm(u"First"_s);
    const auto second = startXterm(u"Second"_s, u"second"_s);
    QVERIFY(first != XCB_WINDOW_NONE && second != XCB_WINDOW_NONE);
    m_observer->activate(first);
    QVERIFY(waitForActive(first));
    showPanel();
    m_platform.pasteboard->setString("pasted\n");
    if (isGone) {
        m_session.kill(*m_programs.takeFirst());
        QTRY_VERIFY(!m_observer->isWindow(first));
    } else {
        m_observer->activate(second);
        QVERIFY(waitForActive(second));
    }
    hidePanel();
    QCOMPARE(paste(), PasteResult::notSent);
    QVERIFY(waitForActive(second));
    xdotool(u"key Return"_s);
    QTRY_COMPARE(typed(u"second"_s), QByteArray("\n"));
    QCOMPARE(typed(), QByteArray());
}

void X11DesktopTest::pasteIntoXterm_data()
{
    QTest::addColumn<QString>("windowClass");
    QTest::addColumn<QString>("heldKeys");
    QTest::addColumn<QStringList>("layout");
    const QStringList usual{u"setxkbmap"_s, u"us"_s};
    const QStringList withoutInsert{u"xmodmap"_s, u"-e"_s, u"keysym Insert = NoSymbol"_s};
    QTest::newRow("keys of the hot key still held") << u"XTerm"_s << u"super shift v"_s << usual;
    QTest::newRow("Return still held") << u"XTerm"_s << u"Return"_s << usual;
    QTest::newRow("no Insert key") << u"XTerm"_s << QString() << withoutInsert;
    QTest::newRow("another terminal, Dvorak") << u"kitty"_s << QString() << QStringList{u"setxkbmap"_s, u"dvorak"_s};
    QTest::newRow("any program") << u"Program"_s << QString() << usual;
    QTest::newRow("no Latin letters") << u"Program"_s << QString() << QStringList{u"setxkbmap"_s, u"ru"_s};
}

void X11DesktopTest::pasteIntoXterm()
{
    QFETCH(const QString, windowClass);
    QFETCH(const QString, heldKeys);
    QFETCH(QStringList, layout);
    m_session.run(layout.takeFirst(), layout);
    QVERIFY(startXterm(windowClass) != XCB_WINDOW_NONE);
    showPanel();
    for (const QString& key : heldKeys.split(u' ', Qt::SkipEmptyParts))
        xdotool(u"keydown "_s + key);
    m_platform.pasteboard->setString("pasted\n");
    hidePanel();
    QCOMPARE(paste(), PasteResult::sent);
    QTRY_COMPARE(typed(), QByteArray("pasted\n"));
}

void X11DesktopTest::utilityWindowStaysOutOfTaskBars()
{
    auto& connection = m_observer->connection();
    const auto hasState = [&](const char* name) {
        const auto states = connection.words(static_cast<xcb_window_t>(m_panel.winId()),
                                             connection.atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 100);
        return std::ranges::find(states, connection.atom(name)) != states.end();
    };
    const auto window = startXterm(u"XTerm"_s);
    QVERIFY(window != XCB_WINDOW_NONE);
    for (int round = 0; round < 3; ++round) {
        showPanel();
        for (const char* name : {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER", "_NET_WM_STATE_ABOVE"})
            QVERIFY2(hasState(name), name);
        hidePanel();
        QVERIFY(waitForActive(window));
    }
}

void X11DesktopTest::compositorComesAndGoes()
{
    QSignalSpy changes(m_platform.windows.get(), &WindowSystem::compositingChanged);
    QVERIFY(!m_platform.windows->isCompositing());
    ForeignClient compositor(m_session.display().toLatin1(), "_NET_WM_CM_S0");
    compositor.take();
    // Any question to the server takes in the events that came before its answer; the socket says nothing of them then.
    m_platform.windows->rememberFrontWindow();
    QTRY_COMPARE(changes.size(), 1);
    QVERIFY(m_platform.windows->isCompositing());
    compositor.die();
    QTRY_COMPARE(changes.size(), 2);
    QVERIFY(!m_platform.windows->isCompositing());
}

int main(int argc, char** argv)
{
    VirtualSession session;
    if (!session.failure().isEmpty()) {
        qCritical().noquote() << session.failure();
        return 1;
    }
    // The session is this process's desktop too.
    const auto environment = session.environment();
    for (const QString& name : environment.keys())
        qputenv(name.toLatin1().constData(), environment.value(name).toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "xcb");

    // An xterm of ours, so that the test does not depend on what is installed.
    const QString applications = session.homePath(u".local/share/applications"_s);
    QDir().mkpath(applications);
    QFile entry(applications + u"/test-terminal.desktop"_s);
    QFile icon(session.homePath(u"icon.svg"_s));
    if (!entry.open(QIODevice::WriteOnly) || !icon.open(QIODevice::WriteOnly))
        return 1;
    icon.write("<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'/>");
    icon.close();
    entry.write("[Desktop Entry]\nType=Application\nName=Terminal of the test\nStartupWMClass=XTerm\nIcon=" +
                icon.fileName().toUtf8() + "\n");
    entry.close();

    // A terminal that pastes as the common ones do, and a program that pastes as most do.
    QFile resources(session.homePath(u".Xdefaults"_s));
    if (!resources.open(QIODevice::WriteOnly))
        return 1;
    resources.write("kitty*VT100.translations: #override Ctrl Shift <KeyPress> V: insert-selection(CLIPBOARD)\n"
                    "Program*VT100.translations: #override Ctrl <KeyPress> v: insert-selection(CLIPBOARD)\n");
    resources.close();

    const QGuiApplication application(argc, argv);
    X11DesktopTest test(session);
    return QTest::qExec(&test, argc, argv);
}

#include "X11DesktopTest.moc"
