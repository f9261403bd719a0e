#include "rewire_synchronised.h"

#include <optional>

#include "runtime/conversions.h"
#include "synchronised_join.h"

namespace merivane::roundtrip {

namespace {

// Nothing where the plan doesn't know the task, or its number in the model is none.
std::optional<std::int16_t> OccurrenceOf(ProjectToModel& state, std::int16_t pid) {
  Recordset task = Ask(state.gInterimConn.get(), TaskOfPlan(state, pid));
  if (!HasRow(task)) {
    return std::nullopt;
  }
  const Value occurrence = task.Field("Text1");
  return IsNumeric(occurrence) ? std::optional(ToInt16(occurrence)) : std::nullopt;
}

void JoinByTask(ProjectToModel& state, const JoinRules& rules, std::int16_t taskPid,
                std::int16_t predecessorPid) {
  const auto task = OccurrenceOf(state, taskPid);
  if (!task) {
    return;
  }
  const auto predecessor = OccurrenceOf(state, predecessorPid);
  if (predecessor) {
    SynchronisedJoin(state, rules, *task, *predecessor).Run();
  }
}

}  // namespace

void JoinFinishes(ProjectToModel& state, std::int16_t predecessor, std::int16_t task) {
  SynchronisedJoin(state, kJoinFinishes, predecessor, task).Run();
}

void JoinStarts(ProjectToModel& state, std::int16_t predecessor, std::int16_t task) {
  SynchronisedJoin(state, kJoinStarts, predecessor, task).Run();
}

void JoinFinishesByTask(ProjectToModel& state, std::int16_t taskPid, std::int16_t predecessorPid) {
  JoinByTask(state, kJoinFinishesByTask, taskPid, predecessorPid);
}

void JoinStartsByTask(ProjectToModel& state, std::int16_t taskPid, std::int16_t predecessorPid) {
  JoinByTask(state, kJoinStartsByTask, taskPid, predecessorPid);
}

}  // namespace merivane::roundtrip
