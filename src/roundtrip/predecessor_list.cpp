#include "roundtrip/predecessor_list.h"

#include <cstddef>

#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::roundtrip {

using namespace runtime;

std::vector<std::string> PredecessorEntries(const std::string& list) {
  std::vector<std::string> entries;
  for (std::size_t position = 1; position > 0;) {
    const auto start = static_cast<std::ptrdiff_t>(position);
    const std::size_t comma = Find(list, ",", position + 1);
    entries.push_back(comma > 0 ? Mid(list, start, static_cast<std::ptrdiff_t>(comma) - start)
                                : Mid(list, start));
    position = comma > 0 ? comma + 1 : 0;
  }
  return entries;
}

Relation RelationOf(std::string_view entry) {
  if (HoldsNoCase(entry, "SS")) return Relation::kStartToStart;
  if (HoldsNoCase(entry, "FF")) return Relation::kFinishToFinish;
  return HoldsNoCase(entry, "SF") ? Relation::kStartToFinish : Relation::kFinishToStart;
}

std::int16_t PlanIdOf(std::string_view entry) { return ToInt16(LeadingNumber(entry)); }

}  // namespace merivane::roundtrip
