// The terminal that the program may be started from.
#pragma once

namespace merivane::platform {

// Whether somebody may be watching.
bool StandardErrorIsTerminal();

// While this lives the terminal takes what is written to it as UTF-8.
class Utf8Terminal {
 public:
  Utf8Terminal();
  ~Utf8Terminal();
  Utf8Terminal(const Utf8Terminal&) = delete;
  Utf8Terminal& operator=(const Utf8Terminal&) = delete;

 private:
  unsigned before_ = 0;  // its code page; 0 where it stays as it is
};

}  // namespace merivane::platform
