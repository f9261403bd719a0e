// A merge that is tried out: its listener hears how far it has come, and it goes on behind what
// would end it, so that one try tells everything.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "runtime/value.h"

namespace merivane::roundtrip {

using namespace runtime;

enum class MergeStep {
  kTask,   // name, duration, notes, place in the outline
  kLinks,  // predecessors
};

// What would end the merge. Texts are Windows-1252.
struct MergeStop {
  std::string kind = {};                    // "task", "resource"; empty: not known yet
  std::optional<std::int32_t> number = {};  // of the row in the plan
  std::string name = {};
  std::size_t line = 0;                // of an MPX file, from 1, 0 in another source
  std::string text = {};               // of that line
  std::optional<MergeStep> step = {};  // none: the plan was being read
};

class MergeListener {
 public:
  virtual ~MergeListener() = default;

  // The next line of an MPX file. What is left in it is read.
  virtual void OnLine(std::size_t number, std::string& line) = 0;

  // The step begins for the task with this number in the plan. False leaves it out.
  virtual bool OnTask(MergeStep step, std::int32_t planId) = 0;

  // A box has just told what would end the merge there; it goes on with what stands behind.
  virtual void OnStop(const MergeStop& stop) = 0;
};

}  // namespace merivane::roundtrip
