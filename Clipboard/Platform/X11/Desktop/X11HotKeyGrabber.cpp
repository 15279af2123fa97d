#include "X11HotKeyGrabber.h"

#include <QCoreApplication>
#include <QHash>
#include <QLoggingCategory>

#include <X11/keysym.h>

#include <algorithm>
#include <array>
#include <optional>

namespace Clipboard {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(timing, "tessaly.timing", QtWarningMsg)

// Far below the pause between two presses, so that none is missed.
constexpr auto heldKeyInterval = 10ms;

/// Where a letter or digit is on a PC keyboard, in the numbers of the kernel's key codes plus eight; nothing for
/// another key. When no layout has Latin letters the place stands in for the letter, as it does in programs that look
/// for their shortcuts.
std::optional<xcb_keycode_t> placeOf(const QString& key)
{
    struct Row
    {
        xcb_keycode_t first;
        QLatin1String keys;
    };
    static constexpr std::array rows{Row{10, "1234567890"_L1}, Row{24, "QWERTYUIOP"_L1}, Row{38, "ASDFGHJKL"_L1},
                                     Row{52, "ZXCVBNM"_L1}};
    for (const Row& row : rows) {
        const qsizetype column = key.size() == 1 ? row.keys.indexOf(key.front()) : -1;
        if (column >= 0)
            return static_cast<xcb_keycode_t>(row.first + column);
    }
    return std::nullopt;
}

/// What the key bears unshifted.
xcb_keysym_t symbolOf(const QString& key)
{
    if (key.size() == 1) // Latin letters and digits are their own symbols
        return key.front().toLower().unicode();
    static const QHash<QString, xcb_keysym_t> named{
        {u"Space"_s, XK_space},        {u"Insert"_s, XK_Insert}, {u"Delete"_s, XK_Delete},
        {u"Home"_s, XK_Home},          {u"End"_s, XK_End},       {u"PageUp"_s, XK_Page_Up},
        {u"PageDown"_s, XK_Page_Down}, {u"Pause"_s, XK_Pause},   {u"Print"_s, XK_Print}};
    if (const auto symbol = named.constFind(key); symbol != named.cend())
        return *symbol;
    return XK_F1 + key.mid(1).toUInt() - 1;
}

} // namespace

X11HotKeyGrabber::X11HotKeyGrabber(const std::shared_ptr<X11::X11Session>& session)
    : m_session(session)
    , m_keyboard(session)
{
    connect(m_session.get(), &X11::X11Session::eventReceived, this, &X11HotKeyGrabber::handle);
    m_heldKeyCheck.setInterval(heldKeyInterval);
    connect(&m_heldKeyCheck, &QTimer::timeout, this, &X11HotKeyGrabber::checkHeldKey);
    m_layoutChanged.setSingleShot(true);
    connect(&m_layoutChanged, &QTimer::timeout, this, &X11HotKeyGrabber::layoutChanged);
}

X11HotKeyGrabber::~X11HotKeyGrabber()
{
    ungrab(m_grabbed);
}

void X11HotKeyGrabber::grab()
{
    m_isWanted = true;
    const auto wanted = wantedCombinations();
    // Most changes of the keyboard leave the key where it is, as the first press on a second keyboard does, and others
    // part of it. What stays is not let go: a press in that moment would be lost.
    if (wanted == m_grabbed && !wanted.empty())
        return;
    const auto without = [](Combinations left, const Combinations& right) {
        std::erase_if(left, [&](const Combination& one) { return std::ranges::find(right, one) != right.end(); });
        return left;
    };
    const bool isComplete = grabAll(without(wanted, m_grabbed));
    ungrab(isComplete ? without(m_grabbed, wanted) : m_grabbed);
    m_grabbed = isComplete ? wanted : Combinations();
    if (wanted.empty()) {
        emit failed(QCoreApplication::translate("HotKeyGrabber",
                                                "The keyboard has no key for %1. Choose another one in Preferences."));
    } else if (isComplete) {
        qCDebug(timing, "hot-key-grabbed");
        emit granted();
    } else {
        emit failed(QCoreApplication::translate("HotKeyGrabber",
                                                "%1 is in use by another program. Choose another key in Preferences."));
    }
}

std::vector<xcb_keycode_t> X11HotKeyGrabber::wantedKeys()
{
    auto keys = m_keyboard.keysWith(symbolOf(chord().key));
    if (const auto place = placeOf(chord().key); keys.empty() && place)
        keys.push_back(*place);
    return keys;
}

/// The grab is for exact modifiers, so it takes one for each state of Caps Lock and Num Lock.
X11HotKeyGrabber::Combinations X11HotKeyGrabber::wantedCombinations()
{
    const auto numLock = m_keyboard.modifierOf(XK_Num_Lock, XCB_MOD_MASK_2);
    int wanted = 0;
    if (chord().super)
        wanted |= m_keyboard.modifierOf(XK_Super_L, XCB_MOD_MASK_4);
    if (chord().alt)
        wanted |= m_keyboard.modifierOf(XK_Alt_L, XCB_MOD_MASK_1);
    wanted |= (chord().shift ? XCB_MOD_MASK_SHIFT : 0) | (chord().control ? XCB_MOD_MASK_CONTROL : 0);
    Combinations combinations;
    for (const xcb_keycode_t key : wantedKeys()) {
        for (const int locks : {0, int(XCB_MOD_MASK_LOCK), int(numLock), XCB_MOD_MASK_LOCK | numLock})
            combinations.push_back({key, static_cast<uint16_t>(wanted | locks)});
    }
    return combinations;
}

/// Either all of them or none.
bool X11HotKeyGrabber::grabAll(const Combinations& combinations)
{
    std::vector<xcb_void_cookie_t> cookies;
    cookies.reserve(combinations.size());
    for (const Combination& combination : combinations)
        cookies.push_back(xcb_grab_key_checked(m_session->xcb(), 1, m_session->root(), combination.modifiers,
                                               combination.key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    bool isComplete = true;
    for (const xcb_void_cookie_t cookie : cookies) {
        const X11::XcbPointer<xcb_generic_error_t> error(xcb_request_check(m_session->xcb(), cookie));
        isComplete = isComplete && !error;
    }
    if (!isComplete)
        ungrab(combinations);
    return isComplete;
}

void X11HotKeyGrabber::ungrab(const Combinations& combinations)
{
    for (const Combination& combination : combinations)
        xcb_ungrab_key(m_session->xcb(), combination.key, m_session->root(), combination.modifiers);
    m_session->connection().flush();
}

void X11HotKeyGrabber::handle(const xcb_generic_event_t* event)
{
    switch (event->response_type & 0x7fU) {
    case XCB_KEY_PRESS:
        keyPressed(*reinterpret_cast<const xcb_key_press_event_t*>(event));
        break;
    case XCB_MAPPING_NOTIFY:
        if (m_isWanted && reinterpret_cast<const xcb_mapping_notify_event_t*>(event)->request != XCB_MAPPING_POINTER)
            m_layoutChanged.start(0);
        break;
    default:
        break;
    }
}

void X11HotKeyGrabber::keyPressed(const xcb_key_press_event_t& event)
{
    const auto isOfKey = [&](const Combination& combination) { return combination.key == event.detail; };
    if (std::ranges::none_of(m_grabbed, isOfKey))
        return;
    // Until the keyboard is let go, no window of ours could take it.
    xcb_ungrab_keyboard(m_session->xcb(), event.time);
    m_session->connection().flush();
    // Held down, the key repeats. Its release goes to whoever has the keyboard now, so it is watched for.
    if (m_heldKey == event.detail)
        return;
    m_heldKey = event.detail;
    m_heldKeyCheck.start();
    emit pressed();
}

void X11HotKeyGrabber::checkHeldKey()
{
    if (m_keyboard.pressedKeys().test(m_heldKey))
        return;
    m_session->readEvents(); // its last repetitions came before that answer
    m_heldKey = 0;
    m_heldKeyCheck.stop();
}

void X11HotKeyGrabber::layoutChanged()
{
    m_keyboard.reload();
    grab();
}

} // namespace Clipboard
