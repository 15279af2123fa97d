#pragma once

/// The program in the tray, from its beginning to its end. It is a library that is loaded when it is wanted, so that
/// the commands of the terminal do not load a toolkit that they never use. The exit code.
extern "C" __attribute__((visibility("default"))) int runTrayProgram(int argc, char** argv);
