#include <unistd.h>

#include "platform/terminal.h"

namespace merivane::platform {

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) != 0; }

int OnUtf8Terminal(const std::function<int()>& run) { return run(); }

}  // namespace merivane::platform
