#include "predecessor_entry.h"

#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::roundtrip {

using namespace runtime;

Relation RelationOf(std::string_view entry) {
  if (HoldsNoCase(entry, "SS")) {
    return Relation::kStartToStart;
  }
  if (HoldsNoCase(entry, "FF")) {
    return Relation::kFinishToFinish;
  }
  return HoldsNoCase(entry, "SF") ? Relation::kStartToFinish : Relation::kFinishToStart;
}

std::int16_t PlanIdOf(std::string_view entry) { return ToInt16(LeadingNumber(entry)); }

}  // namespace merivane::roundtrip
