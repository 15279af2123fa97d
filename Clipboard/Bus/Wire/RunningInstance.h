#pragma once

/// The process that has the program's name on the session bus, as another start of it finds it.
namespace Clipboard::Bus::RunningInstance {

/// Returns when a process has the name, or after answerLimit.
void await();

/// True when a process has the name.
[[nodiscard]] bool isAnnounced();

/// What became of a wish to the process that has the name.
enum class Answer { done, noBus, noAnswer };
/// Asks the running process to show itself. One that is just starting is waited for, one that hangs is not, beyond
/// answerLimit.
[[nodiscard]] Answer activate();

} // namespace Clipboard::Bus::RunningInstance
