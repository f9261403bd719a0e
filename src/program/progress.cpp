#include "program/progress.h"

#include <algorithm>

namespace merivane::program {

namespace {

// In milliseconds.
constexpr std::int64_t kBetweenShows = 100;
constexpr std::int64_t kBetweenBreaths = 40;
constexpr std::int64_t kSlow = 8;  // from one look at the clock to the next
constexpr std::int64_t kFast = 2;

constexpr int kMostSteps = 256;

}  // namespace

Progress::Run::Run(Progress& progress) : progress_(progress) {
  progress_.state_ = {};
  progress_.underWay_ = true;
  progress_.looked_ = progress_.breathed_ = progress_.shown_ = progress_.desktop_.Ticks();
}

Progress::Run::~Run() {
  progress_.underWay_ = false;
  progress_.desktop_.EndProgress();
}

void Progress::Begin(const std::string& stage, std::int64_t total) {
  state_ = {stage, 0, total};
  stepsBetweenLooks_ = stepsLeft_ = 1;  // how long a row of it takes isn't known yet
}

void Progress::Look() {
  const std::int64_t now = desktop_.Ticks();
  if (now - looked_ > kSlow) stepsBetweenLooks_ = std::max(1, stepsBetweenLooks_ / 4);
  if (now - looked_ < kFast) stepsBetweenLooks_ = std::min(kMostSteps, stepsBetweenLooks_ * 2);
  stepsLeft_ = stepsBetweenLooks_;
  looked_ = now;
  if (!underWay_ || now - breathed_ < kBetweenBreaths) return;
  if (now - shown_ >= kBetweenShows) {
    shown_ = now;
    desktop_.ShowProgress(state_);
  }
  breathed_ = now;
  if (!desktop_.Breathe()) throw RunCancelled();
}

bool RunUnlessCancelled(Progress& progress, const std::function<void()>& work) try {
  const Progress::Run run(progress);
  work();
  return true;
} catch (const RunCancelled&) {
  return false;
}

}  // namespace merivane::program
