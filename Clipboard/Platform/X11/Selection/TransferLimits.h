#pragma once

#include "SelectionLimits.h"

namespace Clipboard::X11 {

/// How often the place of owners that end is taken at once. A script that copies by short-lived programs does with it;
/// another program that keeps clipboards as we do, and goes from its place again and again, is answered at this pace.
inline constexpr size_t takeOversAtOnce = 10;
inline constexpr std::chrono::milliseconds takeOverPeriod{1000};

/// How long a program that wants to end is kept waiting for its content to be safe. Whoever quits waits with it.
inline constexpr std::chrono::milliseconds maxSaveHold{500};

/// Between two requests to such a program that refused to be read: it may serve one at a time, and somebody else was
/// first.
inline constexpr std::chrono::milliseconds pauseAfterRefusal{100};

/// When we end ourselves: how long after the role is free another clipboard manager may take it. One that waits for its
/// turn hears of it within a millisecond.
inline constexpr std::chrono::milliseconds successorTimeout{100};

/// How long that manager may take to fetch our content, which it does within tens of milliseconds, or never.
inline constexpr std::chrono::milliseconds handOverTimeout{2000};

/// One piece of large content on its way out, small beside the server's memory, large beside the cost of a round trip.
inline constexpr uint32_t outgoingPieceBytes = 512 * 1024;

/// Conversions in one MULTIPLE request. Clients ask for two or three.
inline constexpr uint32_t maxMultiplePairs = 64;

} // namespace Clipboard::X11
