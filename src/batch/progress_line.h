// One line on a terminal that tells how far a run is.
#pragma once

#include <ostream>
#include <string>

#include "platform/desktop.h"

namespace merivane::batch {

using namespace platform;

class ProgressLine {
 public:
  explicit ProgressLine(std::ostream& terminal) : terminal_(terminal) {}

  void Show(const RunProgress& progress);
  void Clear();  // for whatever else is printed there

 private:
  std::ostream& terminal_;
  std::size_t shown_ = 0;  // characters of the line
};

}  // namespace merivane::batch
