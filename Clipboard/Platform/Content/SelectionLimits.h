#pragma once

#include <QtGlobal>

#include <chrono>
#include <cstdint>

namespace Clipboard {

/// The largest selection that is read or handed out. Beyond any text a person copies, within what a desktop can spare.
inline constexpr qint64 maxSelectionBytes = qint64(256) * 1024 * 1024;

/// The targets of one owner that are looked at. Office programs offer some fifty. A mark counts beyond them as well.
inline constexpr uint32_t maxTargets = 1024;

/// The longest list of them that is read: what the mark of a secret could hide in, as a million atoms of X11.
inline constexpr qint64 maxTargetListBytes = qint64(4) * 1024 * 1024;

/// Forms read only to outlive their owner, after the content: the text and the HTML of a large table beside its picture
/// fit in, and no owner works hard for them.
inline constexpr qint64 maxCompanionBytes = qint64(8) * 1024 * 1024;

/// How long an owner may take for one step: to answer a request, or to send the next piece. An office program that
/// renders a picture takes a second; a hung one costs nothing meanwhile, because the next copy overtakes it at once.
inline constexpr std::chrono::milliseconds readStepTimeout{3000};

/// The same when somebody waits for the reading to come to an end because the program ends.
inline constexpr std::chrono::milliseconds lastStepTimeout{1000};

/// How long one form may take, however steadily its pieces drip. The largest selection of a program on the same machine
/// takes a second; over a network it may take this long.
inline constexpr std::chrono::milliseconds readFormTimeout{15000};

/// How long the reading of one owner may take, from its list of targets to the last form: one form may run out of time,
/// and there is as much left for the others.
inline constexpr std::chrono::milliseconds readTimeout{30000};

/// How long a program that asked for large content may take to fetch the next piece. Only memory is at stake.
inline constexpr std::chrono::milliseconds writeStepTimeout{10000};

/// Large replies under way at the same time; further ones are refused.
inline constexpr int maxOutgoingTransfers = 64;

/// What they hold together, those with the same bytes counted once: two contents of the largest size, so that a new one
/// can be pasted while an old one is still being fetched.
inline constexpr qint64 maxOutgoingBytes = 2 * maxSelectionBytes;

} // namespace Clipboard
