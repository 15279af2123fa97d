#pragma once

#include <QPoint>
#include <QString>

#include <chrono>

struct xcb_connection_t;

namespace Clipboard::Benchmarks {

/// Turns the mouse's wheel through XTEST, over a connection of its own.
class Wheel final
{
public:
    explicit Wheel(const QString& display);
    ~Wheel();
    Wheel(const Wheel&) = delete;
    Wheel& operator=(const Wheel&) = delete;

    /// Moves the pointer there, in pixels of the screen.
    void pointAt(QPoint place);
    /// One notch towards the user. The time at which it was turned.
    std::chrono::steady_clock::time_point turnDown();

private:
    xcb_connection_t* m_connection;
};

} // namespace Clipboard::Benchmarks
