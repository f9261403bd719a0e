// Hears which path the translator takes behind each fan-out that offers several, and what it adds
// to the plan.
#pragma once

#include <string>

#include "runtime/value.h"

namespace merivane::translator {

using namespace runtime;

enum class PlanRow { kTask, kLink, kAssignment };

class TranslationListener {
 public:
  virtual ~TranslationListener() = default;

  // The path behind this junction is looked for.
  virtual void OnFanOut(const Value& junctionNum) = 0;
  // `ownFact`: a path fact of the junction was read. The path leads along the link of that ID to
  // the junction "J" and the digits; nothing is left out while the two are not both numbers.
  virtual void OnPath(bool ownFact, const std::string& linkId,
                      const std::string& junctionDigits) = 0;
  // All paths are taken, and the units numbered. False ends the translation without tasks.
  virtual bool OnPathsTaken() = 0;
  // A row comes next, and nothing more can fail on its way. Whether it goes into the database.
  virtual bool OnRow(PlanRow row) = 0;
  // All tasks have been told of. False ends the translation without their outline numbers.
  virtual bool OnTasksWritten() = 0;
};

}  // namespace merivane::translator
