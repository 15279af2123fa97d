#include "Keyboard.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>
#include <xcb/xtest.h>

namespace Clipboard::Benchmarks {

Keyboard::Keyboard(const QString& display)
    : m_connection(xcb_connect(display.toLatin1().constData(), nullptr))
    , m_symbols(xcb_key_symbols_alloc(m_connection))
{
}

Keyboard::~Keyboard()
{
    xcb_key_symbols_free(m_symbols);
    xcb_disconnect(m_connection);
}

std::chrono::steady_clock::time_point Keyboard::press(std::initializer_list<quint32> symbols)
{
    std::vector<quint8> codes;
    for (const quint32 symbol : symbols) {
        const std::unique_ptr<xcb_keycode_t, decltype(&std::free)> found(xcb_key_symbols_get_keycode(m_symbols, symbol),
                                                                         &std::free);
        if (found) {
            codes.push_back(*found);
        }
    }
    for (const quint8 code : codes) {
        send(XCB_KEY_PRESS, code);
    }
    const auto time = std::chrono::steady_clock::now();
    xcb_flush(m_connection);
    std::ranges::reverse(codes);
    for (const quint8 code : codes) {
        send(XCB_KEY_RELEASE, code);
    }
    xcb_flush(m_connection);
    return time;
}

void Keyboard::send(quint8 type, quint8 code)
{
    xcb_test_fake_input(m_connection, type, code, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

} // namespace Clipboard::Benchmarks
