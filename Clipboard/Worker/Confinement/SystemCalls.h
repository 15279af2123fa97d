#pragma once

namespace Clipboard {

enum class Network { none, webServers };

/// Leaves this thread, and those that it starts, with the system calls that it takes to read files, calculate, start
/// threads and write to what is open already; with `webServers` also those for TCP, for asking name servers and for the
/// list of our own addresses. All others seem to be missing from the kernel: no file is created or opened for writing,
/// no program started, no other process signalled or looked into. Never undone. False, with nothing changed, when the
/// kernel cannot.
[[nodiscard]] bool allowFewSystemCalls(Network network);

} // namespace Clipboard
