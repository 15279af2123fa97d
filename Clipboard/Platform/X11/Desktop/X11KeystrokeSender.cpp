#include "X11KeystrokeSender.h"

#include "ClipboardEngine.h"

#include <QCoreApplication>
#include <QPointer>

#include <X11/keysym.h>
#include <xcb/xtest.h>

#include <algorithm>

namespace Clipboard {

using namespace std::chrono_literals;

namespace {

// A window manager gives the focus back within milliseconds, on a busy machine later. A program that does not get it in
// this time never will.
constexpr auto focusTimeout = 2s;
constexpr auto focusInterval = 5ms;
// A program asks the server what a key stands for when it comes to the key, which tells nobody. A busy one takes this
// long.
constexpr auto spareKeyLease = 2s;

/// While it lives, no other program changes anything at the server: what is found out stays true until it is acted
/// upon.
class ServerGrab final
{
public:
    explicit ServerGrab(xcb_connection_t* xcb)
        : m_xcb(xcb)
    {
        xcb_grab_server(m_xcb);
    }
    ~ServerGrab()
    {
        xcb_ungrab_server(m_xcb);
        xcb_flush(m_xcb);
    }
    Q_DISABLE_COPY_MOVE(ServerGrab)

private:
    xcb_connection_t* m_xcb;
};

} // namespace

X11KeystrokeSender::X11KeystrokeSender(std::shared_ptr<X11::X11Session> session,
                                       std::shared_ptr<X11::FrontWindow> frontWindow,
                                       std::shared_ptr<ClipboardEngine> engine, QString limits)
    : m_session(std::move(session))
    , m_frontWindow(std::move(frontWindow))
    , m_engine(std::move(engine))
    , m_limits(std::move(limits))
{
    m_spareKeyReturn.setSingleShot(true);
    m_spareKeyReturn.setInterval(spareKeyLease);
    connect(&m_spareKeyReturn, &QTimer::timeout, this, [this] { m_spareKey.reset(); });
}

bool X11KeystrokeSender::isPossible(const X11::X11Session& session)
{
    const auto* extension = xcb_get_extension_data(session.xcb(), &xcb_test_id);
    return extension != nullptr && extension->present != 0;
}

void X11KeystrokeSender::sendPaste(std::function<void(PasteResult)> done)
{
    QTimer::singleShot(0, this, [this, done = std::move(done)] { waitForFocus(QDeadlineTimer(focusTimeout), done); });
}

void X11KeystrokeSender::waitForFocus(const QDeadlineTimer& deadline, const Done& done)
{
    if (const xcb_window_t window = m_frontWindow->keyboardWindow(); window != XCB_WINDOW_NONE)
        return waitForWrites(pasteChordOf(m_session->windowClassAround(window)), done);
    if (deadline.hasExpired() || m_frontWindow->remembered() == XCB_WINDOW_NONE)
        return done(PasteResult::notSent);
    QTimer::singleShot(focusInterval, this, [this, deadline, done] { waitForFocus(deadline, done); });
}

void X11KeystrokeSender::waitForWrites(PasteChord chord, const Done& done)
{
    if (!m_engine)
        return done(send(chord));
    // Only the main thread looks at this object, which may be gone by then.
    m_engine->afterWrites(chord == PasteChord::ShiftInsert, [self = QPointer(this), chord, done](bool areInForce) {
        const auto goOn = [self, chord, done, areInForce] {
            if (self)
                done(areInForce ? self->send(chord) : PasteResult::notSent);
        };
        QMetaObject::invokeMethod(QCoreApplication::instance(), goOn, Qt::QueuedConnection);
    });
}

PasteResult X11KeystrokeSender::send(PasteChord chord)
{
    const auto keys = keysOf(chord);
    if (!keys)
        return PasteResult::notSent;
    // The user may turn to another window at any time, also between a look at the focus and the key.
    const ServerGrab grab(m_session->xcb());
    if (m_frontWindow->keyboardWindow() == XCB_WINDOW_NONE)
        return PasteResult::notSent;
    releaseHeldKeys();
    type(*keys);
    return PasteResult::sent;
}

/// The user may still hold the keys of the hot key or Return. With them down the chord would be another one; and they
/// are not pressed again afterwards, because by then the user may have let them go.
void X11KeystrokeSender::releaseHeldKeys()
{
    const auto pressed = X11::Keyboard(m_session).pressedKeys();
    for (size_t key = 0; key < pressed.size(); ++key) {
        if (pressed[key])
            fake(XCB_KEY_RELEASE, static_cast<xcb_keycode_t>(key));
    }
}

/// In the order in which they are pressed.
std::optional<X11KeystrokeSender::Keys> X11KeystrokeSender::keysOf(PasteChord chord)
{
    X11::Keyboard keyboard(m_session);
    std::vector<std::optional<xcb_keycode_t>> keys;
    if (chord != PasteChord::ShiftInsert)
        keys.push_back(keyboard.modifierKey(XCB_MAP_INDEX_CONTROL));
    if (chord != PasteChord::ControlV)
        keys.push_back(keyboard.modifierKey(XCB_MAP_INDEX_SHIFT));
    keys.push_back(keyWith(keyboard, chord == PasteChord::ShiftInsert ? XK_Insert : XK_v));

    Keys found;
    for (const auto key : keys) {
        if (!key)
            return {};
        found.push_back(*key);
    }
    return found;
}

/// The key of the user's keyboard, or one that is lent the symbol for as long as programs need to notice.
std::optional<xcb_keycode_t> X11KeystrokeSender::keyWith(X11::Keyboard& keyboard, xcb_keysym_t symbol)
{
    if (const auto keys = keyboard.keysWith(symbol); !keys.empty())
        return keys.front();
    if (!m_spareKey || m_spareKey->symbol() != symbol) {
        m_spareKey.reset();
        const auto key = keyboard.spareKey();
        if (!key)
            return {};
        m_spareKey = std::make_unique<X11::SpareKey>(m_session, *key, symbol);
    }
    m_spareKeyReturn.start();
    return m_spareKey->key();
}

void X11KeystrokeSender::type(const Keys& keys)
{
    for (const xcb_keycode_t key : keys)
        fake(XCB_KEY_PRESS, key);
    std::for_each(keys.rbegin(), keys.rend(), [this](xcb_keycode_t key) { fake(XCB_KEY_RELEASE, key); });
}

void X11KeystrokeSender::fake(uint8_t eventType, xcb_keycode_t key)
{
    xcb_test_fake_input(m_session->xcb(), eventType, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

} // namespace Clipboard
