// Hears which task of the plan the merge has come to.
#pragma once

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

  // The step begins for the task with this number in the plan.
  virtual void OnTask(MergeStep step, const Value& planId) = 0;
};

}  // namespace merivane::roundtrip
