#include "X11Driver.h"

#include "ForeignClient.h"
#include "VirtualSession.h"
#include "Xcb.h"

#include <cstring>
#include <xcb/xfixes.h>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

namespace {

const QStringList clipboard{u"-selection"_s, u"clipboard"_s, u"-t"_s};

// ms. A program that asks an owner who is just leaving waits for an answer for ever.
constexpr int longestPaste = 15'000;

QStringList moveTo(QPoint place)
{
    return {u"mousemove"_s, QString::number(place.x()), QString::number(place.y())};
}

QRect geometryOnScreen(xcb_connection_t* connection, xcb_window_t window)
{
    const Xcb::Pointer<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
    const auto cookie = xcb_translate_coordinates(connection, window, Xcb::root(connection), 0, 0);
    const Xcb::Pointer<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(connection, cookie, nullptr));
    return size && origin ? QRect(origin->dst_x, origin->dst_y, size->width, size->height) : QRect();
}

} // namespace

X11Driver::X11Driver(VirtualSession& session)
    : m_session(session)
{
}

xcb_connection_t* X11Driver::xcb() const
{
    return m_session.connection();
}

void X11Driver::hand(const QStringList& commands)
{
    m_session.run(u"xdotool"_s, commands);
}

void X11Driver::press(const QStringList& chords)
{
    hand(QStringList{u"key"_s} + chords);
}

void X11Driver::type(const QString& text)
{
    hand({u"type"_s, u"--delay"_s, u"5"_s, text});
}

void X11Driver::movePointer(QPoint place)
{
    hand(moveTo(place));
}

void X11Driver::click(QPoint place, int times, int button)
{
    hand(moveTo(place) + QStringList{u"click"_s, u"--repeat"_s, QString::number(times), u"--delay"_s, u"60"_s,
                                     QString::number(button)});
    awaitRelease();
}

void X11Driver::turnWheel(int notches)
{
    hand({u"click"_s, u"--repeat"_s, QString::number(notches), u"--delay"_s, u"10"_s, u"4"_s});
}

void X11Driver::drag(const QList<QPoint>& path)
{
    QStringList commands = moveTo(path.first()) + QStringList{u"mousedown"_s, u"1"_s};
    for (const QPoint place : path.sliced(1))
        commands += moveTo(place);
    hand(commands + QStringList{u"mouseup"_s, u"1"_s});
    awaitRelease();
}

void X11Driver::pressButton()
{
    hand({u"mousedown"_s, u"1"_s});
}

void X11Driver::releaseButton()
{
    hand({u"mouseup"_s, u"1"_s});
    awaitRelease();
}

/// A window manager holds the pointer while it looks at a press: until it lets go, keys overtake what comes after.
void X11Driver::awaitRelease()
{
    constexpr int buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    (void)VirtualSession::waitUntil([this] {
        const Xcb::Pointer<xcb_query_pointer_reply_t> pointer(
            xcb_query_pointer_reply(xcb(), xcb_query_pointer(xcb(), Xcb::root(xcb())), nullptr));
        return pointer && (pointer->mask & buttons) == 0;
    });
}

QPoint X11Driver::pointer() const
{
    const Xcb::Pointer<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(xcb(), xcb_query_pointer(xcb(), Xcb::root(xcb())), nullptr));
    return pointer ? QPoint(pointer->root_x, pointer->root_y) : QPoint();
}

QByteArray X11Driver::pointerShape() const
{
    const auto version = xcb_xfixes_query_version(xcb(), XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION);
    xcb_discard_reply(xcb(), version.sequence);
    const auto cookie = xcb_xfixes_get_cursor_image_and_name(xcb());
    const Xcb::Pointer<xcb_xfixes_get_cursor_image_and_name_reply_t> image(
        xcb_xfixes_get_cursor_image_and_name_reply(xcb(), cookie, nullptr));
    return image ? QByteArray(xcb_xfixes_get_cursor_image_and_name_name(image.get()), image->nbytes) : QByteArray();
}

void X11Driver::copy(const QByteArray& content, const QString& target)
{
    const quint32 owner = m_session.selectionOwner("CLIPBOARD");
    m_session.run(u"xclip"_s, clipboard + QStringList{target, u"-i"_s}, content);
    // It has gone into the background before the server has heard of it.
    (void)VirtualSession::waitUntil([&] { return m_session.selectionOwner("CLIPBOARD") != owner; });
}

std::unique_ptr<ForeignOwner> X11Driver::otherProgram()
{
    return std::make_unique<ForeignClient>(m_session);
}

QStringList X11Driver::terminal(const QString& title, const QString& command) const
{
    // At the bottom left, out of the panel's way.
    return {u"xterm"_s, u"-geometry"_s, u"60x10+0-0"_s, u"-T"_s, title, u"-e"_s, command};
}

QByteArray X11Driver::pasted(const QString& target)
{
    return m_session.run(u"xclip"_s, clipboard + QStringList{target, u"-o"_s}, {}, longestPaste).output;
}

X11Driver::Window X11Driver::describe(xcb_window_t window, bool isUnmanaged) const
{
    QByteArray title = Xcb::property(xcb(), window, "_NET_WM_NAME");
    if (title.isEmpty())
        title = Xcb::property(xcb(), window, "WM_NAME"); // of older programs
    return {window, geometryOnScreen(xcb(), window), QString::fromUtf8(title), isUnmanaged};
}

QList<X11Driver::Window> X11Driver::windowsOf(const QByteArray& program) const
{
    QList<Window> found;
    collect(Xcb::root(xcb()), program, found);
    return found;
}

/// A window is seen when it and all around it are mapped; the icon in a tray is somewhere within the tray's windows.
void X11Driver::collect(xcb_window_t window, const QByteArray& program, QList<Window>& found) const
{
    const Xcb::Pointer<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(xcb(), xcb_get_window_attributes(xcb(), window), nullptr));
    const Xcb::Pointer<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(xcb(), xcb_query_tree(xcb(), window), nullptr));
    if (!attributes || !tree || attributes->map_state != XCB_MAP_STATE_VIEWABLE)
        return;
    if (Xcb::property(xcb(), window, "WM_CLASS").toLower().startsWith(program)) {
        found.append(describe(window, attributes->override_redirect != 0));
        return;
    }
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i)
        collect(children[i], program, found);
}

/// Whether the server sends what is typed to the window or to one inside it.
bool X11Driver::hasFocus(xcb_window_t window) const
{
    const Xcb::Pointer<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(xcb(), xcb_get_input_focus(xcb()), nullptr));
    xcb_window_t inside = focus ? focus->focus : xcb_window_t(XCB_WINDOW_NONE);
    while (inside != window && inside > XCB_INPUT_FOCUS_POINTER_ROOT) {
        const Xcb::Pointer<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(xcb(), xcb_query_tree(xcb(), inside), nullptr));
        inside = tree ? tree->parent : xcb_window_t(XCB_WINDOW_NONE);
    }
    return inside == window;
}

std::optional<X11Driver::Window> X11Driver::activeWindow() const
{
    const QByteArray value = Xcb::property(xcb(), Xcb::root(xcb()), "_NET_ACTIVE_WINDOW");
    xcb_window_t window = XCB_WINDOW_NONE;
    if (value.size() == sizeof window)
        std::memcpy(&window, value.constData(), sizeof window);
    // The window manager may still call a window active that has been hidden and shown again meanwhile.
    if (window == XCB_WINDOW_NONE || !hasFocus(window))
        return {};
    return describe(window, false);
}

QSize X11Driver::size() const
{
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(xcb())).data;
    return {screen->width_in_pixels, screen->height_in_pixels};
}

QByteArray X11Driver::pixels() const
{
    const auto width = static_cast<uint16_t>(size().width());
    const auto height = static_cast<uint16_t>(size().height());
    const auto cookie = xcb_get_image(xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, Xcb::root(xcb()), 0, 0, width, height, ~0U);
    const Xcb::Pointer<xcb_get_image_reply_t> image(xcb_get_image_reply(xcb(), cookie, nullptr));
    return image ? QByteArray(reinterpret_cast<const char*>(xcb_get_image_data(image.get())),
                              xcb_get_image_data_length(image.get()))
                 : QByteArray();
}

void X11Driver::place(const Window& window, QRect geometry)
{
    const QString id = QString::number(window.id);
    hand({u"windowsize"_s, u"--sync"_s, id, QString::number(geometry.width()), QString::number(geometry.height()),
          u"windowmove"_s, u"--sync"_s, id, QString::number(geometry.x()), QString::number(geometry.y())});
}

} // namespace Clipboard::Testing
