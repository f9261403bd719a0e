#include "plan_outline.h"

#include "runtime/conversions.h"
#include "runtime/run_time_error.h"

namespace merivane::roundtrip {

void PlanOutline::Read(Recordset& tasks) {
  std::vector<std::size_t> above;  // the rows in front that can still be a parent, outermost first
  for (; !tasks.Eof(); tasks.MoveNext()) {
    const std::size_t place = rows_.size();
    Row row;
    row.bookmark = tasks.Bookmark();
    if (const Value level = tasks.Field("Outline"); !level.IsNull()) row.level = ToInt32(level);
    row.text1 = tasks.Field("Text1");
    while (!above.empty() && row.level && rows_[above.back()].level >= row.level) above.pop_back();
    if (!above.empty()) row.parent = above.back();
    above.push_back(place);
    if (const Value pid = tasks.Field("PID"); !pid.IsNull()) {
      firstRowOf_.emplace(ToInt32(pid), place);
    }
    rows_.push_back(std::move(row));
  }
}

std::size_t PlanOutline::ParentOf(const Value& pid) const {
  const auto first = pid.IsNull() ? firstRowOf_.end() : firstRowOf_.find(ToInt32(pid));
  if (first == firstRowOf_.end() || !rows_[first->second].parent) {
    throw RunTimeError(kNoCurrentRecord);
  }
  return *rows_[first->second].parent;
}

std::string OccurrenceText(const Value& text1) { return IsBlank(text1) ? "0" : Joined(text1); }

}  // namespace merivane::roundtrip
