#include <string>

#include "going_on.h"
#include "merge_statements.h"
#include "merge_steps.h"
#include "roundtrip/plan_as_mpx.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::roundtrip {

namespace {

bool LiesInScenario(ProjectToModel& state, std::int16_t occurrence) {
  Recordset tasks = Ask(
      state.gInterimConn.get(),
      "Select * from MSP_TASKS Where TASK_UID > 0 AND KV7_Scenario_HEX = ", state.gCurrentScenario,
      " And KV7_PROCOCC_HEX = ", occurrence, AndProjId(state));
  return HasRow(tasks);
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

// Carries out the SS and FF entries, and leaves the occurrence numbers of the finish-to-start ones
// in gFsPredecessors (0 for a task that the plan doesn't know).
void ParsePredecessors(ProjectToModel& state, Recordset& task) {
  const std::string list = Joined(task.Field("Predecessor"));
  const Value pid = task.Field("PID");
  state.gFsPredecessors.clear();
  for (const std::string& entry : PredecessorEntries(list)) {
    const std::int16_t predecessor = PlanIdOf(entry);
    switch (RelationKindOf(entry)) {
      case RelationKind::kStartToStart:
        JoinStartsByTask(state, ToInt16(pid), predecessor);
        break;
      case RelationKind::kFinishToFinish:
        JoinFinishesByTask(state, ToInt16(pid), predecessor);
        break;
      case RelationKind::kStartToFinish:
        break;
      case RelationKind::kFinishToStart:
        state.gFsPredecessors.push_back(predecessor);
        break;
    }
  }
  for (std::int16_t& predecessor : state.gFsPredecessors) {
    predecessor = OccurrenceOfPlanTask(state, predecessor).value_or(0);
  }
}

// Leaves those that have no link or chain of junctions to the task yet in gNewPredecessors.
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

void OpenLinksInto(ProjectToModel& state, const Value& end, Recordset& links) {
  links.OpenDynamic(LinksWhere(state, " AND Destination_Num = ", end), state.gInterimConn.get());
}

void RemoveIncomingLink(ProjectToModel& state, std::int16_t task) {
  Recordset links;
  OpenLinksInto(state, task, links);
  if (!HasRow(links)) return;
  if (TextIs(links.Field("Origin_Type"), kJunction)) {
    Recordset linksOfJunction;
    OpenLinksInto(state, links.Field("Origin_Num"), linksOfJunction);
    if (!HasRow(linksOfJunction)) return;
  }
  links.Delete();
}

void ApplyPredecessors(ProjectToModel& state, Recordset& task) {
  const std::int16_t count = CountPredecessors(task.Field("Predecessor"));
  if (count > 1) {
    ApplySeveralPredecessors(state, task);
  } else if (count == 1) {
    ApplySinglePredecessor(state, task);
  } else if (const Value text1 = task.Field("Text1"); !IsBlank(text1)) {
    if (const std::int16_t number = ToInt16(text1); number != 0) RemoveIncomingLink(state, number);
  }
}

}  // namespace

void MergeLinksOfTask(ProjectToModel& state, Recordset& task, MergeListener* listener) {
  state.progress.Step();
  TryTask(state.desktop, listener, MergeStep::kLinks, task,
          [&] { ApplyPredecessors(state, task); });
}

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

void ApplySinglePredecessor(ProjectToModel& state, Recordset& task) {
  state.gDestinationUse = ToInt16(task.Field("Text1"));
  const std::string entry = Joined(task.Field("Predecessor"));
  state.gOriginUse = OccurrenceOfPlanTask(state, PlanIdOf(entry)).value_or(0);
  switch (RelationKindOf(entry)) {
    case RelationKind::kStartToStart:
      JoinStarts(state, state.gOriginUse, state.gDestinationUse);
      break;
    case RelationKind::kFinishToFinish:
      JoinFinishes(state, state.gOriginUse, state.gDestinationUse);
      break;
    case RelationKind::kStartToFinish:
      break;
    case RelationKind::kFinishToStart:
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

}  // namespace merivane::roundtrip
