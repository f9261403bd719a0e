// Hears which line of an MPX file, and then which task of the plan, the merge has come to.
#pragma once

#include <string>

#include "runtime/value.h"

namespace merivane::roundtrip {

using namespace runtime;

enum class MergeStep {
  kTask,   // name, duration, notes, place in the outline
  kLinks,  // predecessors
};

class MergeListener {
 public:
  virtual ~MergeListener() = default;

  // The next line of the file is in hand; they count from the second one.
  virtual void OnLine(const std::string& line) = 0;

  // A name in the line in hand can't stand in the model; a box says so next, and the merge ends.
  virtual void OnRefusedName() = 0;

  // The step begins for the task with this number in the plan.
  virtual void OnTask(MergeStep step, const Value& planId) = 0;
};

}  // namespace merivane::roundtrip
