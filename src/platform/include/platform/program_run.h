// What the program was started with, and the terminal that it may be started from.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace merivane::platform {

// The words behind the program's name, UTF-8.
std::vector<std::string> ProgramArguments(int argc, char** argv);

// The folder of the program's file, UTF-8; `name` is what it was called by.
std::string ProgramFolder(const std::string& name);

// Libraries that are loaded from now on come from the system's folder or the program's own, never
// from the current one or those of PATH. Linux does so anyway.
void TakeLibrariesOfTheSystemAlone();

// Whether somebody may be watching.
bool StandardErrorIsTerminal();

// Runs while the terminal takes what is written to it as UTF-8. Gives what `run` gives.
int OnUtf8Terminal(const std::function<int()>& run);

}  // namespace merivane::platform
