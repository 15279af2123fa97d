#include "SessionTest.h"
#include "X11HotKeyGrabber.h"

#include <QSignalSpy>

#include <atomic>
#include <thread>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

// Key codes, on a keyboard of the usual kind.
constexpr xcb_keycode_t latinV = 55;
constexpr xcb_keycode_t dvorakV = 60;

/// True when another program could have the hot key on that key now; it does not keep it.
bool takeHotKey(X11::XcbConnection& other, xcb_keycode_t key)
{
    const uint16_t modifiers = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_4;
    const auto cookie =
        xcb_grab_key_checked(other.get(), 1, other.root(), modifiers, key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const X11::XcbPointer<xcb_generic_error_t> error(xcb_request_check(other.get(), cookie));
    if (!error)
        xcb_ungrab_key(other.get(), key, other.root(), modifiers);
    other.synchronize();
    return !error;
}

struct Program
{
    explicit Program(const QByteArray& display)
        : session(X11::X11Session::open(display))
    {
    }
    std::shared_ptr<X11::X11Session> session;
    X11HotKeyGrabber hotKey{session};
    QSignalSpy pressed{&hotKey, &HotKeyGrabber::pressed};
    QSignalSpy failed{&hotKey, &HotKeyGrabber::failed};
};

} // namespace

/// The hot key under the fingers of a person, whatever the keyboard.
class X11HotKeyTest final : public SessionTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_program.reset(); }
    void comesWhateverTheLocks();
    void countsOnceWhileHeld();
    void followsTheLayout();
    void isNotLetGoForAnotherKeyboard();
    void mayBeAnotherPrograms();

private:
    void xdotool(const QString& arguments)
    {
        QCOMPARE(m_session->run(u"xdotool"_s, arguments.split(u' ')).exitCode, 0);
    }
    /// Handles what the server has said so far.
    void catchUp()
    {
        m_program->session->connection().synchronize();
        QCoreApplication::processEvents();
    }
    std::unique_ptr<Program> m_program;
};

void X11HotKeyTest::init()
{
    m_session->run(u"setxkbmap"_s, {u"us"_s});
    m_program = std::make_unique<Program>(display());
    m_program->hotKey.grab();
}

void X11HotKeyTest::comesWhateverTheLocks()
{
    qsizetype expected = 0;
    for (const QString& lock : {u"Caps_Lock"_s, u"Num_Lock"_s}) {
        for (int round = 0; round < 2; ++round) { // locked, and unlocked again
            xdotool(u"key "_s + lock);
            xdotool(u"key super+v shift+v"_s);
            catchUp(); // the key of before is seen to be up
            xdotool(u"key super+shift+v"_s);
            ++expected;
            QTRY_COMPARE(m_program->pressed.size(), expected);
        }
    }
    QCOMPARE(m_program->failed.size(), 0);
}

void X11HotKeyTest::countsOnceWhileHeld()
{
    int presses = 0; // the key's own repetitions among them
    connect(m_program->session.get(), &X11::X11Session::eventReceived, this,
            [&](const xcb_generic_event_t* event) { presses += int((event->response_type & 0x7fU) == XCB_KEY_PRESS); });
    xdotool(u"keydown super keydown shift keydown v"_s);
    QTRY_VERIFY(presses > 3);
    xdotool(u"keyup v keyup shift keyup super"_s);
    QCOMPARE(m_program->pressed.size(), 1);
}

void X11HotKeyTest::followsTheLayout()
{
    const auto other = X11::XcbConnection::open(display());
    m_session->run(u"setxkbmap"_s, {u"us"_s, u"dvorak"_s});
    QTRY_VERIFY(!takeHotKey(*other, dvorakV));
    xdotool(u"key super+shift+v"_s);
    QTRY_COMPARE(m_program->pressed.size(), 1);
    m_session->run(u"setxkbmap"_s, {u"ru"_s}); // which has no Latin letters
    QTRY_VERIFY(!takeHotKey(*other, latinV));
    xdotool(u"keydown super keydown shift key 55 keyup shift keyup super"_s);
    QTRY_COMPARE(m_program->pressed.size(), 2);
}

void X11HotKeyTest::isNotLetGoForAnotherKeyboard()
{
    // Whoever wants it, too, gets it in the moment in which it is free.
    std::atomic<bool> isOver = false;
    std::atomic<bool> isTaken = false;
    std::jthread other([&, connection = X11::XcbConnection::open(display())] {
        while (!isOver && !isTaken)
            isTaken = takeHotKey(*connection, latinV);
    });
    for (int round = 0; round < 20 && !isTaken; ++round) {
        m_session->run(u"xmodmap"_s,
                       {u"-e"_s, u"keycode 248 = F24"_s}); // tells every program that the keyboard changed
        catchUp();
    }
    xdotool(u"key super+shift+v"_s);
    const bool came = VirtualSession::waitUntil([&] { return isTaken || m_program->pressed.size() == 1; });
    isOver = true;
    QVERIFY(came && !isTaken);
}

void X11HotKeyTest::mayBeAnotherPrograms()
{
    Program second(display());
    second.hotKey.grab();
    QVERIFY(second.failed.value(0).value(0).toString().startsWith(u"%1 is in use by another program."_s));
    // Another chord may be free.
    second.hotKey.setChord(*ClipboardCore::KeyChord::fromText(u"Ctrl+Alt+Space"));
    second.hotKey.grab();
    xdotool(u"key ctrl+alt+space"_s);
    QTRY_COMPARE(second.pressed.size(), 1);

    // What could be had is not kept: nothing of the key is its own.
    m_program.reset();
    QTRY_VERIFY(takeHotKey(second.session->connection(), latinV));
    Program third(display());
    third.hotKey.grab();
    xdotool(u"key super+shift+v"_s);
    QTRY_COMPARE(third.pressed.size(), 1);
}

QTEST_GUILESS_MAIN(X11HotKeyTest)
#include "X11HotKeyTest.moc"
