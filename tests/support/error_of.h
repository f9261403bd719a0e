// The errors that actions end in.
#pragma once

#include <functional>
#include <string>

#include "runtime/run_time_error.h"

namespace merivane::test {

// The number of the error that `action` ends in; 0 without one.
inline int ErrorOf(const std::function<void()>& action, std::string* description = nullptr) {
  try {
    action();
    return 0;
  } catch (const runtime::RunTimeError& error) {
    if (description != nullptr) *description = error.Description();
    return error.Number();
  }
}

}  // namespace merivane::test
