#pragma once

#include "RunningTessaly.h"
#include "VirtualSession.h"

#include <QRgb>
#include <QString>
#include <QTemporaryDir>

#include <chrono>
#include <optional>
#include <vector>

namespace Clipboard::Benchmarks {

class Keyboard;
class ScreenProbe;

using Clock = std::chrono::steady_clock;

/// How often things are done: enough for a median, or just enough to show that it still works.
struct Effort
{
    bool isShort = false;
    [[nodiscard]] int times(int whole, int quick) const { return isShort ? quick : whole; }
};

/// A history to start with.
struct Filling
{
    int entries = 0;
    int bytes = 0; // of each entry's text
};

/// The program under measurement in a session of its own.
class Bench final
{
public:
    /// Writes the history and starts the program, on a screen of that scale. Ends the process with a message when that
    /// fails.
    explicit Bench(Filling filling = {}, int scale = 1,
                   Testing::VirtualSession::Kind kind = Testing::VirtualSession::Kind::x11);
    /// The same with a history file of that content.
    explicit Bench(const QByteArray& history, int scale = 1,
                   Testing::VirtualSession::Kind kind = Testing::VirtualSession::Kind::x11);

    /// In which the server keeps what is on the screen; in memory.
    QTemporaryDir screen;
    Testing::VirtualSession session;
    Testing::RunningTessaly tessaly;

    /// From the start of the process to the moment it watches the clipboard, in ms.
    [[nodiscard]] double startUp() const { return m_startUp; }
    /// Starts it once more.
    void restart();
    /// Presses it at once. The time at which it went down.
    static Clock::time_point pressHotKey(Keyboard& keyboard);
    /// Calls the panel up by the hot key and waits for it. Milliseconds to its first painted frame.
    double showPanel(Keyboard& keyboard);
    void hidePanel(Keyboard& keyboard);
    /// The part of the screen in which the panel has its list, in pixels, while it is shown.
    [[nodiscard]] QRect listOnScreen();
    /// Milliseconds from `begin` to the next moment of that name. Ends the process with a message when none comes.
    double until(const QByteArray& moment, Clock::time_point begin);

private:
    int m_scale;
    double m_startUp = 0;
};

/// One row of the table.
void row(const QString& what, const QString& measured, const QString& unit, const QString& goal);
void row(const QString& what, double measured, const QString& unit, const QString& goal);
/// The median of the values, and the slowest of them. In ms.
void row(const QString& what, const std::vector<double>& values, const QString& goal);

[[nodiscard]] double median(std::vector<double> values);
[[nodiscard]] double maximum(const std::vector<double>& values);
[[noreturn]] void giveUp(const QString& why);
/// A small picture, all of that colour, as PNG.
[[nodiscard]] QByteArray pictureOf(QRgb color);

// The groups of rows.
void startRows(Effort effort);
void captureRows(Effort effort);
void commandRows(Effort effort);
void desktopRows(Effort effort);
void killRows(Effort effort);
void panelRows(Effort effort);
void frameRows(Effort effort);
void editorRows(Effort effort);
void safetyRows(Effort effort);
void switchRows(Effort effort);
void soakRows(Effort effort);

} // namespace Clipboard::Benchmarks
