#include "merge_statements.h"
#include "predecessor_entry.h"
#include "predecessors.h"
#include "rewire_synchronised.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::roundtrip {

namespace {

// The entry at `position`, which moves behind it; to 0 behind the last one. A comma right at the
// position doesn't end the entry.
std::string NextEntry(const std::string& list, std::size_t& position) {
  const auto start = static_cast<std::ptrdiff_t>(position);
  const std::size_t comma = Find(list, ",", position + 1);
  position = comma > 0 ? comma + 1 : 0;
  return comma > 0 ? Mid(list, start, static_cast<std::ptrdiff_t>(comma) - start)
                   : Mid(list, start);
}

std::int16_t OccurrenceOfPlanTask(ProjectToModel& state, std::int16_t pid) {
  Recordset task = Ask(state.gInterimConn.get(), TaskOfPlan(state, pid));
  if (!HasRow(task)) {
    return 0;
  }
  const Value occurrence = task.Field("Text1");
  return occurrence.IsNull() ? std::int16_t{0} : ToInt16(occurrence);
}

}  // namespace

std::int16_t CountPredecessors(const Value& text) {
  if (IsBlank(text)) {
    return 0;
  }
  const std::string list = ToText(text);
  std::int16_t count = 1;
  for (std::size_t comma = Find(list, ","); comma > 1; comma = Find(list, ",", comma + 1)) {
    count = AddInt16(count, 1);
  }
  return count;
}

void ParsePredecessors(ProjectToModel& state, Recordset& task) {
  const std::string list = Joined(task.Field("Predecessor"));
  const Value pid = task.Field("PID");
  state.gFsPredecessors.clear();
  for (std::size_t position = 1; position > 0;) {
    const std::string entry = NextEntry(list, position);
    const std::int16_t predecessor = PlanIdOf(entry);
    switch (RelationOf(entry)) {
      case Relation::kStartToStart:
        JoinStartsByTask(state, ToInt16(pid), predecessor);
        break;
      case Relation::kFinishToFinish:
        JoinFinishesByTask(state, ToInt16(pid), predecessor);
        break;
      case Relation::kStartToFinish:
        break;
      case Relation::kFinishToStart:
        state.gFsPredecessors.push_back(predecessor);
        break;
    }
  }
  for (std::int16_t& predecessor : state.gFsPredecessors) {
    predecessor = OccurrenceOfPlanTask(state, predecessor);
  }
}

}  // namespace merivane::roundtrip
