// How far a long run has come, told to the desktop now and then.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/desktop.h"
#include "store/work_listener.h"

namespace merivane::program {

using namespace platform;
using namespace store;

// Thrown where the user cancels a run. It is no std::exception, so that no guard takes it for a
// failure.
struct RunCancelled {};

// Counting is cheap: the clock is looked at only once in many steps, more often where they are
// slow. Outside of a run nothing is told.
class Progress final : public WorkListener {
 public:
  // The desktop outlives it.
  explicit Progress(Desktop& desktop) : desktop_(desktop) {}

  // While it lives, a run is under way.
  class Run {
   public:
    explicit Run(Progress& progress);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

   private:
    Progress& progress_;
  };

  // A part of the run begins, of `total` rows; 0 where that isn't known.
  void Begin(const std::string& stage, std::int64_t total) override;
  // One row more. Throws RunCancelled, as Beat does.
  void Step() override {
    ++state_.done;
    Beat();
  }
  // Work without rows goes on.
  void Beat() override {
    if (--stepsLeft_ <= 0) Look();
  }

 private:
  void Look();

  Desktop& desktop_;
  RunProgress state_;
  bool underWay_ = false;
  int stepsLeft_ = 0;
  int stepsBetweenLooks_ = 1;
  std::int64_t looked_ = 0;  // at the clock, as the next two in its ticks
  std::int64_t breathed_ = 0;
  std::int64_t shown_ = 0;
};

// Runs the work as a run of its own. False where the user has cancelled it.
bool RunUnlessCancelled(Progress& progress, const std::function<void()>& work);

}  // namespace merivane::program
