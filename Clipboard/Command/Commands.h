#pragma once

#include <QString>

namespace Clipboard::Command {

/// Whether the first argument says that a command follows, instead of the start of the program.
[[nodiscard]] bool isMeant(int argc, char** argv);
/// Does what the command line says. Needs no display, and makes the application object itself. The exit code.
[[nodiscard]] int run(int argc, char** argv);
/// A line of help for each command.
[[nodiscard]] QString help();

} // namespace Clipboard::Command
