#include <io.h>
#include <windows.h>

#include "platform/terminal.h"

namespace merivane::platform {

bool StandardErrorIsTerminal() {
  constexpr int kStandardError = 2;
  return _isatty(kStandardError) != 0;
}

Utf8Terminal::Utf8Terminal() {
  const UINT page = GetConsoleOutputCP();
  if (page != CP_UTF8 && SetConsoleOutputCP(CP_UTF8) != FALSE) before_ = page;
}

Utf8Terminal::~Utf8Terminal() {
  if (before_ != 0) SetConsoleOutputCP(before_);
}

}  // namespace merivane::platform
