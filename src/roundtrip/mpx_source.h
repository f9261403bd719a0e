// An MPX file as the source of a plan.
#pragma once

#include <string>

#include "mpx_file.h"
#include "plan_source.h"

namespace merivane::roundtrip {

using namespace program;

class MpxSource : public PlanSource {
 public:
  MpxSource(ProjectToModel& state, const std::string& fileName)
      : state_(state), fileName_(fileName), lines_(state) {}

  PlanHead Open() override;

  // Records 50 and 51, up to record 60; a file without one keeps the resources that it drops.
  void HandResources(WorkTables& tables) override;

  // Records 70, 71 and 75.
  void HandTasks(WorkTables& tables) override;

  bool HasTasks() const override { return true; }

 private:
  ProjectToModel& state_;
  std::string fileName_;
  MpxLines lines_;  // each step starts at the line that the one before left in hand
};

}  // namespace merivane::roundtrip
