#include <unistd.h>

#include "platform/terminal.h"

namespace merivane::platform {

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) != 0; }

Utf8Terminal::Utf8Terminal() = default;
Utf8Terminal::~Utf8Terminal() = default;

}  // namespace merivane::platform
