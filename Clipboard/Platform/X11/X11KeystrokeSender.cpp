#include "X11KeystrokeSender.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include <X11/keysym.h>
#include <xcb/xtest.h>

#include <algorithm>

namespace Clipboard {

using namespace std::chrono_literals;
using X11::PasteChord;

namespace {

// A window manager gives the focus back within milliseconds. A program that does not get it in this time never will.
constexpr auto focusTimeout = 500ms;
constexpr auto focusInterval = 5ms;

} // namespace

X11KeystrokeSender::X11KeystrokeSender(std::shared_ptr<X11::X11Session> session,
                                       std::shared_ptr<X11::FrontWindow> frontWindow,
                                       std::shared_ptr<X11::SelectionEngine> engine)
    : m_session(std::move(session))
    , m_frontWindow(std::move(frontWindow))
    , m_engine(std::move(engine))
{
}

bool X11KeystrokeSender::isPossible(const X11::X11Session& session)
{
    const auto* extension = xcb_get_extension_data(session.xcb(), &xcb_test_id);
    return extension != nullptr && extension->present != 0;
}

void X11KeystrokeSender::sendPaste(std::function<void()> done)
{
    const xcb_window_t target = m_frontWindow->remembered();
    const auto windowClass =
        target == XCB_WINDOW_NONE ? X11::X11Session::WindowClass{} : m_session->windowClass(target);
    const PasteChord chord = X11::pasteChordOf(windowClass);
    const auto go = [this, chord, done = std::move(done)] { waitForFocus(QDeadlineTimer(focusTimeout), chord, done); };
    if (!m_engine) {
        go();
        return;
    }
    // Only the main thread looks at this object, which may be gone by then.
    m_engine->afterWrites(chord == PasteChord::ShiftInsert, [self = QPointer(this), go] {
        const auto goOn = [self, go] {
            if (self)
                go();
        };
        QMetaObject::invokeMethod(QCoreApplication::instance(), goOn, Qt::QueuedConnection);
    });
}

void X11KeystrokeSender::waitForFocus(const QDeadlineTimer& deadline, PasteChord chord,
                                      const std::function<void()>& done)
{
    if (!m_frontWindow->hasKeyboard() && !deadline.hasExpired()) {
        QTimer::singleShot(focusInterval, this, [this, deadline, chord, done] { waitForFocus(deadline, chord, done); });
        return;
    }
    releaseHeldKeys();
    type(chord);
    done();
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

void X11KeystrokeSender::type(PasteChord chord)
{
    X11::Keyboard keyboard(m_session);
    std::vector<xcb_keysym_t> symbols;
    if (chord != PasteChord::ShiftInsert)
        symbols.push_back(XK_Control_L);
    if (chord != PasteChord::ControlV)
        symbols.push_back(XK_Shift_L);
    symbols.push_back(chord == PasteChord::ShiftInsert ? XK_Insert : XK_v);

    std::vector<xcb_keycode_t> keys;
    for (const xcb_keysym_t symbol : symbols) {
        const auto candidates = keyboard.keysWith(symbol);
        if (candidates.empty())
            return;
        keys.push_back(candidates.front());
    }
    for (const xcb_keycode_t key : keys)
        fake(XCB_KEY_PRESS, key);
    std::ranges::reverse(keys);
    for (const xcb_keycode_t key : keys)
        fake(XCB_KEY_RELEASE, key);
    m_session->connection().flush();
}

void X11KeystrokeSender::fake(uint8_t eventType, xcb_keycode_t key)
{
    xcb_test_fake_input(m_session->xcb(), eventType, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

} // namespace Clipboard
