#include <io.h>

#include "platform/terminal.h"

namespace merivane::platform {

bool StandardErrorIsTerminal() {
  constexpr int kStandardError = 2;
  return _isatty(kStandardError) != 0;
}

}  // namespace merivane::platform
