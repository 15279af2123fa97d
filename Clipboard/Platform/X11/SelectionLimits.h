#pragma once

#include <QtGlobal>

#include <chrono>
#include <cstdint>

namespace Clipboard::X11 {

/// The largest selection that is read or handed out. Beyond any text a person copies, within what a desktop can spare.
inline constexpr qint64 maxSelectionBytes = qint64(256) * 1024 * 1024;

/// The targets of one owner that are looked at. Office programs offer some fifty.
inline constexpr uint32_t maxTargets = 1024;

/// Forms read only to outlive their owner, after the content: small ones, so that no owner works hard for them.
inline constexpr qint64 maxCompanionBytes = qint64(1024) * 1024;

/// How long an owner may take for one step: to answer a request, or to send the next piece. An office program that
/// renders a picture takes a second; a hung one costs nothing meanwhile, because the next copy overtakes it at once.
inline constexpr std::chrono::milliseconds readStepTimeout{3000};

/// How long a program that asked for large content may take to fetch the next piece. Only memory is at stake.
inline constexpr std::chrono::milliseconds writeStepTimeout{10000};

/// One piece of large content on its way out, small beside the server's memory, large beside the cost of a round trip.
inline constexpr uint32_t outgoingPieceBytes = 512 * 1024;

/// Conversions in one MULTIPLE request. Clients ask for two or three.
inline constexpr uint32_t maxMultiplePairs = 64;

/// Large replies under way at the same time; further ones are refused.
inline constexpr int maxOutgoingTransfers = 64;

} // namespace Clipboard::X11
