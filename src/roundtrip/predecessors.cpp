#include "predecessors.h"

#include "link_detection.h"
#include "merge_statements.h"
#include "new_elements.h"
#include "predecessor_entry.h"
#include "rewire_precedence.h"
#include "rewire_synchronised.h"
#include "runtime/conversions.h"
#include "sql_pieces.h"

namespace merivane::roundtrip {

namespace {

bool LiesInScenario(ProjectToModel& state, std::int16_t occurrence) {
  Recordset tasks = Ask(
      state.gInterimConn.get(),
      "Select * from MSP_TASKS Where TASK_UID > 0 AND KV7_Scenario_HEX = ", state.gCurrentScenario,
      " And KV7_PROCOCC_HEX = ", occurrence, AndProjId(state));
  return HasRow(tasks);
}

bool IsLinked(ProjectToModel& state, std::int16_t origin, std::int16_t destination) {
  return DirectLinkExists(state, origin, destination) ||
         LinkedThroughOr(state, origin, destination) ||
         LinkedThroughAnd(state, origin, destination);
}

void ApplySinglePrecedence(ProjectToModel& state) {
  const std::int16_t origin = state.gOriginUse;
  const std::int16_t destination = state.gDestinationUse;
  if (!LiesInScenario(state, origin)) {
    return;
  }
  if (origin >= 1 && destination >= 1 && IsLinked(state, origin, destination)) {
    return;
  }
  if (AddDirectLink(state, origin, destination)) {
    return;
  }
  DropPlainIncomingLinks(state, destination);
  ConnectThroughJunctions(state, origin, destination);
}

}  // namespace

void ApplySinglePredecessor(ProjectToModel& state, Recordset& task) {
  state.gDestinationUse = ToInt16(task.Field("Text1"));
  const std::string entry = Joined(task.Field("Predecessor"));
  state.gOriginUse = ModelIdOfTask(state, PlanIdOf(entry));
  switch (RelationOf(entry)) {
    case Relation::kStartToStart:
      JoinStarts(state, state.gOriginUse, state.gDestinationUse);
      break;
    case Relation::kFinishToFinish:
      JoinFinishes(state, state.gOriginUse, state.gDestinationUse);
      break;
    case Relation::kStartToFinish:
      break;
    case Relation::kFinishToStart:
      ApplySinglePrecedence(state);
      break;
  }
}

void ApplySeveralPredecessors(ProjectToModel& state, Recordset& task) {
  ParsePredecessors(state, task);
  FilterNewPredecessors(state, task);
  if (state.gNewPredecessors.empty()) {
    return;
  }
  if (state.gNewPredecessors.size() > 1) {
    AddFanInForPredecessors(state, task);
    AttachNewPredecessors(state);
    return;
  }
  state.gOriginUse = state.gNewPredecessors.front();
  state.gDestinationUse = ToInt16(task.Field("Text1"));
  if (!AddDirectLink(state, state.gOriginUse, state.gDestinationUse)) {
    ConnectThroughJunctions(state, state.gOriginUse, state.gDestinationUse);
  }
}

void FilterNewPredecessors(ProjectToModel& state, Recordset& task) {
  state.gNewPredecessors.clear();
  state.gDestinationUse = ToInt16(task.Field("Text1"));
  for (const std::int16_t predecessor : state.gFsPredecessors) {
    state.gOriginUse = predecessor;
    Recordset tasks =
        Ask(state.gInterimConn.get(),
            "Select * from MSP_TASKS Where KV7_Scenario_HEX = ", state.gCurrentScenario,
            "And KV7_PROCOCC_HEX = ", predecessor, AndProjId(state));
    if (HasRow(tasks) && !IsLinked(state, predecessor, state.gDestinationUse) && predecessor != 0) {
      state.gNewPredecessors.push_back(predecessor);
    }
  }
}

}  // namespace merivane::roundtrip
