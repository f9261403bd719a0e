#include "platform/desktop.h"

#include <chrono>

#include "platform/program_run.h"

namespace merivane::platform {

bool Desktop::Breathe() { return !EndIsAsked(); }

std::int64_t Desktop::Ticks() const {
  using std::chrono::milliseconds;
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<milliseconds>(now).count();
}

}  // namespace merivane::platform
