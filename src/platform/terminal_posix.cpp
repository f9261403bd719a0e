#include <unistd.h>

#include "platform/terminal.h"

namespace merivane::platform {

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) == 1; }

}  // namespace merivane::platform
