#pragma once

#include <QString>

#include <chrono>
#include <initializer_list>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

namespace Clipboard::Benchmarks {

/// Presses keys through XTEST, over a connection of its own, so that the time of the press is known.
class Keyboard final
{
public:
    explicit Keyboard(const QString& display);
    ~Keyboard();
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    /// Presses the keys (X key symbols) one after the other and releases them in reverse. The time at which the last
    /// one went down.
    std::chrono::steady_clock::time_point press(std::initializer_list<quint32> symbols);

private:
    void send(quint8 type, quint8 code);

    xcb_connection_t* m_connection;
    xcb_key_symbols_t* m_symbols;
};

} // namespace Clipboard::Benchmarks
