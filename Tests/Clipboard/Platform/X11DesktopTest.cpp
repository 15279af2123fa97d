#include "ForeignClient.h"
#include "FrontWindow.h"
#include "PlatformLoader.h"
#include "Rows.h"
#include "SessionTest.h"
#include "X11Session.h"

#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QRasterWindow>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

/// A window of nobody known, on the screen.
xcb_window_t openWindow(X11::XcbConnection& connection)
{
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
    connection.synchronize();
    return window;
}

bool write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

} // namespace

/// Focus, keys and applications in a session with a window manager and real programs.
class X11DesktopTest final : public QObject
{
    Q_OBJECT
public:
    explicit X11DesktopTest(VirtualSession& session)
        : m_session(session)
    {
    }

private slots:
    void init();
    void cleanup();
    void frontmostApplicationIsNotOurs();
    void pastesIntoNoOtherWindow();
    void pastesIntoTerminals();
    void compositorComesAndGoes();
    void keyboardGoesBackWithoutAWindowManager();

private:
    void pastesIntoNeither(const char* name, bool isGone);
    void pastesInto(const char* name, const QString& windowClass, const QString& heldKeys, const QStringList& layout);
    void closePrograms();
    /// An xterm that writes what is typed or pasted into the file of its name, line by line.
    xcb_window_t startXterm(const QString& windowClass);
    [[nodiscard]] bool waitForActive(xcb_window_t window);
    [[nodiscard]] QByteArray typed(const QString& windowClass) const;
    [[nodiscard]] Workspace::Application frontmost() const
    {
        return m_platform.workspace->frontmostApplication().value_or(Workspace::Application());
    }
    /// What the panel does: shows a window over the one in front, which is remembered, and in no task bar.
    void showPanel();
    void hidePanel()
    {
        m_panel.hide();
        m_platform.windows->restoreFrontWindow();
    }
    /// What has become of a paste; nothing if it never ended.
    [[nodiscard]] std::optional<PasteResult> paste();

    VirtualSession& m_session;
    Platform m_platform;
    std::shared_ptr<X11::X11Session> m_observer;
    QRasterWindow m_panel;
    QList<QProcess*> m_programs;
};

void X11DesktopTest::init()
{
    m_observer = X11::X11Session::open();
    QVERIFY(m_observer);
    QTRY_VERIFY(m_observer->hasActivation()); // the window manager announces itself before it manages windows
    m_platform = loadPlatform();
    m_panel.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    m_panel.setGeometry(600, 300, 200, 100);
    m_panel.create();
    m_platform.windows->prepare(&m_panel, WindowSystem::Role::panel);
    m_platform.windows->setShadow(&m_panel, {1, 2, 3, 4});
}

void X11DesktopTest::cleanup()
{
    m_panel.hide();
    m_panel.destroy();
    closePrograms();
    m_platform = {};
    m_observer.reset();
    m_session.run(u"setxkbmap"_s, {u"us"_s});
}

void X11DesktopTest::closePrograms()
{
    for (QProcess* program : std::as_const(m_programs))
        m_session.kill(*program);
    m_programs.clear();
    for (const QString& name : {u"First"_s, u"Second"_s, u"XTerm"_s, u"kitty"_s, u"Program"_s})
        QFile::remove(m_session.homePath(name));
}

xcb_window_t X11DesktopTest::startXterm(const QString& windowClass)
{
    const QString command = u"cat > %1"_s.arg(m_session.homePath(windowClass));
    m_programs.append(&m_session.start(
        u"xterm"_s, {u"-T"_s, windowClass, u"-class"_s, windowClass, u"-e"_s, u"sh"_s, u"-c"_s, command}));
    xcb_window_t window = XCB_WINDOW_NONE;
    const auto isOpen = [&] {
        for (const Desktop::Window& candidate : m_session.desktop().windowsOf("xterm"))
            window = candidate.title == windowClass ? candidate.id : window;
        return window != XCB_WINDOW_NONE && QFile::exists(m_session.homePath(windowClass));
    };
    if (!QTest::qWaitFor(isOpen, VirtualSession::defaultTimeout))
        return XCB_WINDOW_NONE;
    m_observer->activate(window); // it is for the window manager whether a new window gets the keyboard
    return waitForActive(window) ? window : xcb_window_t{XCB_WINDOW_NONE};
}

/// The server gives the ids of closed windows out again, and the window manager may still call the old one active when
/// the new one is not yet shown. The focus is the server's own knowledge.
bool X11DesktopTest::waitForActive(xcb_window_t window)
{
    return QTest::qWaitFor([&] { return m_observer->activeWindow() == window && m_observer->focusWindow() == window; },
                           patience);
}

QByteArray X11DesktopTest::typed(const QString& windowClass) const
{
    QFile file(m_session.homePath(windowClass));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void X11DesktopTest::showPanel()
{
    m_platform.windows->rememberFrontWindow();
    m_panel.show();
    m_platform.windows->activate(&m_panel);
    const auto window = static_cast<xcb_window_t>(m_panel.winId());
    QVERIFY(waitForActive(window));
    auto& connection = m_observer->connection();
    const auto states = connection.words(window, connection.atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 100);
    for (const char* name : {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER", "_NET_WM_STATE_ABOVE"})
        QVERIFY2(std::ranges::find(states, connection.atom(name)) != states.end(), name);
    const auto extents = connection.words(window, connection.atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 4);
    QCOMPARE(extents, std::vector<uint32_t>({1, 3, 2, 4})); // left, right, top, bottom
}

std::optional<PasteResult> X11DesktopTest::paste()
{
    std::optional<PasteResult> result;
    m_platform.keystrokes->sendPaste([&](PasteResult ended) { result = ended; });
    const bool isEarly = result.has_value(); // the caller was kept waiting
    return QTest::qWaitFor([&] { return result.has_value(); }, patience) && !isEarly ? result : std::nullopt;
}

void X11DesktopTest::frontmostApplicationIsNotOurs()
{
    const xcb_window_t window = openWindow(m_observer->connection());
    QVERIFY(waitForActive(window));
    QCOMPARE(frontmost().name, u"Elsewhere"_s); // by its class
    QCOMPARE(frontmost().bundleID, u"Elsewhere"_s);
    QTRY_VERIFY(!m_platform.workspace->applicationIcon(u"Elsewhere"_s).isNull());
    QVERIFY(m_platform.workspace->applicationIcon(u"nothing.that.exists"_s).isNull());
    showPanel();
    m_observer->connection().synchronize();
    QCoreApplication::processEvents(); // all that the server has said so far
    QCOMPARE(frontmost().name, u"Elsewhere"_s);

    // Installed meanwhile, it is known when it comes to the front again.
    const QString icon = m_session.homePath(u"icon.svg"_s);
    QVERIFY(write(icon, "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'/>"));
    QVERIFY(write(m_session.homePath(u".local/share/applications/known.desktop"_s),
                  "[Desktop Entry]\nType=Application\nName=Somewhere\nStartupWMClass=Elsewhere\nIcon=" + icon.toUtf8() +
                      '\n'));
    hidePanel();
    QTRY_COMPARE(frontmost().name, u"Somewhere"_s);
    QVERIFY(!m_platform.workspace->applicationIcon(u"known"_s).isNull());
    // Also for a copy within the moment of the start, for which the applications are still being read.
    QCOMPARE(loadPlatform().workspace->frontmostApplication().value().bundleID, u"known"_s);
    // LibreOffice names its window after it is active.
    constexpr char renamed[] = "late\0Later"; // instance and class, each with its end
    auto& connection = m_observer->connection();
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        sizeof renamed, renamed);
    connection.synchronize();
    QCOMPARE(frontmost().name, u"Later"_s);
}

void X11DesktopTest::pastesIntoNeither(const char* /*name*/, bool isGone)
{
    const auto first = startXterm(u"First"_s);
    const auto second = startXterm(u"Second"_s);
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
    m_session.desktop().press({u"Return"_s});
    QTRY_COMPARE(typed(u"Second"_s), QByteArray("\n"));
    QCOMPARE(typed(u"First"_s), QByteArray());
    closePrograms();
}

void X11DesktopTest::pastesIntoNoOtherWindow()
{
    checkRows(this, &X11DesktopTest::pastesIntoNeither,
              {{"the user has turned to another window", false},
               {"the window has gone, and another one gets the focus", true}});
}

void X11DesktopTest::pastesInto(const char* /*name*/, const QString& windowClass, const QString& heldKeys,
                                const QStringList& layout)
{
    m_session.run(layout.first(), layout.mid(1));
    m_session.run(u"xset"_s, {u"r"_s, u"off"_s}); // a slow machine would repeat the held keys before they are let go
    QVERIFY(startXterm(windowClass) != XCB_WINDOW_NONE);
    showPanel();
    for (const QString& key : heldKeys.split(u' ', Qt::SkipEmptyParts))
        QCOMPARE(m_session.run(u"xdotool"_s, {u"keydown"_s, key}).exitCode, 0);
    m_platform.pasteboard->setString("pasted\n");
    hidePanel();
    QCOMPARE(paste(), PasteResult::sent);
    QTRY_COMPARE(typed(windowClass), QByteArray("pasted\n"));
    closePrograms();
}

void X11DesktopTest::pastesIntoTerminals()
{
    const QStringList usual{u"setxkbmap"_s, u"us"_s};
    checkRows(this, &X11DesktopTest::pastesInto,
              {{"keys of the hot key still held", u"XTerm"_s, u"super shift v"_s, usual},
               {"Return still held", u"XTerm"_s, u"Return"_s, usual},
               {"no Insert key", u"XTerm"_s, {}, {u"xmodmap"_s, u"-e"_s, u"keysym Insert = NoSymbol"_s}},
               {"another terminal, Dvorak", u"kitty"_s, {}, {u"setxkbmap"_s, u"dvorak"_s}},
               {"no Latin letters", u"Program"_s, {}, {u"setxkbmap"_s, u"ru"_s}}});
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

void X11DesktopTest::keyboardGoesBackWithoutAWindowManager()
{
    const VirtualSession bare({.windowManager = false});
    const auto session = X11::X11Session::open(bare.display().toLatin1());
    QVERIFY(session);
    auto& connection = session->connection();
    const xcb_window_t theirs = openWindow(connection);
    const xcb_window_t third = openWindow(connection);
    const xcb_window_t ours = openWindow(connection);
    const uint32_t process = uint32_t(QCoreApplication::applicationPid());
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, ours, connection.atom("_NET_WM_PID"),
                        XCB_ATOM_CARDINAL, 32, 1, &process);

    X11::FrontWindow front(session);
    const auto focusAndRemember = [&](xcb_window_t window) {
        session->activate(window);
        front.remember();
        return front.remembered();
    };
    QCOMPARE(focusAndRemember(theirs), theirs);
    QCOMPARE(front.keyboardWindow(), theirs);
    QCOMPARE(focusAndRemember(ours), theirs);
    QCOMPARE(front.keyboardWindow(), XCB_WINDOW_NONE);
    front.restore();
    QCOMPARE(session->focusWindow(), theirs);
    session->activate(third); // by the user
    front.restore();
    QCOMPARE(session->focusWindow(), third);
    xcb_destroy_window(connection.get(), theirs);
    QCOMPARE(front.remembered(), XCB_WINDOW_NONE);
}

int main(int argc, char** argv)
{
    VirtualSession session;
    enter(session);
    qputenv("QT_QPA_PLATFORM", "xcb");

    // A terminal that pastes as the common ones do, and a program that pastes as most do.
    QDir().mkpath(session.homePath(u".local/share/applications"_s));
    if (!write(session.homePath(u".Xdefaults"_s),
               "kitty*VT100.translations: #override Ctrl Shift <KeyPress> V: insert-selection(CLIPBOARD)\n"
               "Program*VT100.translations: #override Ctrl <KeyPress> v: insert-selection(CLIPBOARD)\n"))
        return 1;

    const QGuiApplication application(argc, argv);
    X11DesktopTest test(session);
    return QTest::qExec(&test, argc, argv);
}

#include "X11DesktopTest.moc"
