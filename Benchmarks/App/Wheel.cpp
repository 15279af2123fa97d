#include "Wheel.h"

#include <xcb/xtest.h>

namespace Clipboard::Benchmarks {

namespace {

constexpr quint8 wheelDown = 5; // the button that X servers report for it

} // namespace

Wheel::Wheel(const QString& display)
    : m_connection(xcb_connect(display.toLatin1().constData(), nullptr))
{
}

Wheel::~Wheel()
{
    xcb_disconnect(m_connection);
}

void Wheel::pointAt(QPoint place)
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    xcb_test_fake_input(m_connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root, static_cast<int16_t>(place.x()),
                        static_cast<int16_t>(place.y()), 0);
    xcb_flush(m_connection);
}

std::chrono::steady_clock::time_point Wheel::turnDown()
{
    const auto time = std::chrono::steady_clock::now();
    xcb_test_fake_input(m_connection, XCB_BUTTON_PRESS, wheelDown, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_test_fake_input(m_connection, XCB_BUTTON_RELEASE, wheelDown, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_flush(m_connection);
    return time;
}

} // namespace Clipboard::Benchmarks
