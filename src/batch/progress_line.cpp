#include "progress_line.h"

#include "runtime/code_page.h"

namespace merivane::batch {

void ProgressLine::Show(const RunProgress& progress) {
  std::string line = ToUtf8(progress.stage);
  if (progress.done > 0) line += ": " + std::to_string(progress.done);
  if (progress.total > 0) line += " of " + std::to_string(progress.total);
  Clear();
  terminal_ << line << std::flush;
  shown_ = line.size();
}

void ProgressLine::Clear() {
  if (shown_ == 0) return;
  terminal_ << '\r' << std::string(shown_, ' ') << '\r' << std::flush;
  shown_ = 0;
}

}  // namespace merivane::batch
