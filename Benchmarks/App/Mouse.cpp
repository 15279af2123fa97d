#include "Mouse.h"

#include <xcb/xtest.h>

namespace Clipboard::Benchmarks {

namespace {

// Buttons as X servers number them.
constexpr quint8 leftButton = 1;
constexpr quint8 wheelDown = 5;

} // namespace

Mouse::Mouse(const QString& display)
    : m_connection(xcb_connect(display.toLatin1().constData(), nullptr))
{
}

Mouse::~Mouse()
{
    xcb_disconnect(m_connection);
}

Mouse::Time Mouse::moveTo(QPoint place)
{
    return send(XCB_MOTION_NOTIFY, 0, place);
}

Mouse::Time Mouse::pressLeft()
{
    return send(XCB_BUTTON_PRESS, leftButton);
}

Mouse::Time Mouse::releaseLeft()
{
    return send(XCB_BUTTON_RELEASE, leftButton);
}

Mouse::Time Mouse::turnDown()
{
    const Time time = send(XCB_BUTTON_PRESS, wheelDown);
    send(XCB_BUTTON_RELEASE, wheelDown);
    return time;
}

Mouse::Time Mouse::send(quint8 type, quint8 detail, QPoint place)
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    const Time time = std::chrono::steady_clock::now();
    xcb_test_fake_input(m_connection, type, detail, XCB_CURRENT_TIME, root, static_cast<int16_t>(place.x()),
                        static_cast<int16_t>(place.y()), 0);
    xcb_flush(m_connection);
    return time;
}

} // namespace Clipboard::Benchmarks
