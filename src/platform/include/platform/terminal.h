// The terminal that the program may be started from.
#pragma once

#include <functional>

namespace merivane::platform {

// Whether somebody may be watching.
bool StandardErrorIsTerminal();

// Runs while the terminal takes what is written to it as UTF-8. Gives what `run` gives.
int OnUtf8Terminal(const std::function<int()>& run);

}  // namespace merivane::platform
