// Hears which path the translator takes behind each fan-out that offers several.
#pragma once

#include <string>

#include "runtime/value.h"

namespace merivane::translator {

using namespace runtime;

class PathListener {
 public:
  virtual ~PathListener() = default;

  // `ownFact`: a path fact of this junction was read. The path leads along the link of that ID to
  // the junction "J" and the digits; nothing is left out while the two are not both numbers.
  virtual void OnFanOut(const Value& junctionNum, bool ownFact, const std::string& linkId,
                        const std::string& junctionDigits) = 0;
};

}  // namespace merivane::translator
