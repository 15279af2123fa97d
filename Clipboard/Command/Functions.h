#pragma once

#include "BusClient.h"
#include "CommandLine.h"

#include <optional>

/// What the commands do. Each answers why it came to nothing, or nothing.
namespace Clipboard::Command::Functions {

using Outcome = std::optional<Failure>;

[[nodiscard]] Outcome list(const CommandLine& line, const BusClient& client);
[[nodiscard]] Outcome get(const CommandLine& line, const BusClient& client);
[[nodiscard]] Outcome add(const CommandLine& line, const BusClient& client);
[[nodiscard]] Outcome clear(const CommandLine& line, const BusClient& client);
[[nodiscard]] Outcome actions(const CommandLine& line, const BusClient& client);
[[nodiscard]] Outcome run(const CommandLine& line, const BusClient& client);
[[nodiscard]] Outcome pause(const CommandLine& line, const BusClient& client);
[[nodiscard]] Outcome config(const CommandLine& line, const BusClient& client);
/// Has GNOME run the program on the key of the preferences.
[[nodiscard]] Outcome bind(const CommandLine& line, const BusClient& client);
[[nodiscard]] Outcome annotate(const CommandLine& line, const BusClient& client);
[[nodiscard]] Outcome status(const CommandLine& line, const BusClient& client);
/// Calls the method with the entry that is named.
[[nodiscard]] Outcome onEntry(const QString& method, const CommandLine& line, const BusClient& client);
/// Calls the method.
[[nodiscard]] Outcome plain(const QString& method, const BusClient& client);
/// Until the running program ends.
[[nodiscard]] Outcome watch(const CommandLine& line, const BusClient& client);

/// A failure to write the output.
[[nodiscard]] Failure cannotWrite();
/// The failure in an answer, if it is one.
[[nodiscard]] Outcome failureIn(const Answer& answer);

} // namespace Clipboard::Command::Functions
