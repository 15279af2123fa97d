#pragma once

#include <QPoint>
#include <QString>

#include <chrono>

struct xcb_connection_t;

namespace Clipboard::Benchmarks {

/// Moves and presses the mouse through XTEST, over a connection of its own. The answers are the times at which the X
/// server was told.
class Mouse final
{
public:
    using Time = std::chrono::steady_clock::time_point;

    explicit Mouse(const QString& display);
    ~Mouse();
    Mouse(const Mouse&) = delete;
    Mouse& operator=(const Mouse&) = delete;

    /// In pixels of the screen.
    Time moveTo(QPoint place);
    Time pressLeft();
    Time releaseLeft();
    /// One notch of the wheel towards the user.
    Time turnDown();

private:
    Time send(quint8 type, quint8 detail, QPoint place = {});

    xcb_connection_t* m_connection;
};

} // namespace Clipboard::Benchmarks
