#include <io.h>
#include <windows.h>

#include "platform/terminal.h"

namespace merivane::platform {

bool StandardErrorIsTerminal() {
  constexpr int kStandardError = 2;
  return _isatty(kStandardError) != 0;
}

int OnUtf8Terminal(const std::function<int()>& run) {
  const UINT before = GetConsoleOutputCP();  // 0 without a terminal
  SetConsoleOutputCP(CP_UTF8);
  const int result = run();
  if (before != 0) SetConsoleOutputCP(before);
  return result;
}

}  // namespace merivane::platform
