// The pass from a model to a plan: what it carries from step to step, the record sets that it
// walks, and its steps in the order in which it takes them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "program/model_words.h"
#include "program/program.h"
#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "store/ask.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::translator {

using namespace program;

// What no step changes, so that the database is asked for it once.
struct PassMemory {
  std::optional<std::unordered_set<std::int32_t>> decomposed;  // Use_Num of each UOB that is
  std::unordered_map<std::string, std::string> aliases;        // by the object's number
  std::unordered_map<std::string, Value> glossaries;           // by the activity's name
};

struct Pass {
  ModelToProject& state;
  bool mpxWanted = false;
  std::int16_t resourceCounter = 1;  // next PID of a resource
  std::int16_t assignmentUID = 0;    // last ASSN_UID given out
  double taskHours = 0;              // working hours of the current task
  std::int32_t taskDays = 0;         // whole days of the current task
  std::string glossaryText{};        // last glossary of an activity; not cleared between tasks
  bool projectMarked = false;        // PROJ_EXT_EDITED is set
  PassMemory memory{};
  // Sets to add rows to, open from the first row on.
  Recordset tasks{};
  Recordset links{};
  Recordset assignments{};

  Recordset& Opened(Recordset& rows, std::string_view sql) const {
    if (!rows.IsOpen()) rows.OpenDynamic(sql, state.gMspConn.get());
    return rows;
  }

  void PrintMpx(std::string_view line) {
    if (mpxWanted) state.files.Print(state.mpxFileNo, line);
  }

  // Whether the row that comes next goes into the database.
  bool IsStored(PlanRow row) const {
    return !state.translationListener || state.translationListener->OnRow(row);
  }
};

// A column of the plan and the one of the model that it takes its values from.
struct CopiedColumn {
  const char* name;
  const char* source;
};

inline void CopyColumns(std::span<const CopiedColumn> columns, Recordset& from, Recordset& to) {
  for (const CopiedColumn& column : columns) to.SetField(column.name, from.Field(column.source));
}

// Walks the set from its position to its end.
inline int CountRows(Recordset& rows) {
  int count = 0;
  for (; !rows.Eof(); rows.MoveNext()) ++count;
  return count;
}

// The places in a model that the steps ask for by the same statement.
inline Recordset ActivitiesOfScenario(ModelToProject& state, const Value& scenario) {
  return Ask(state.gMspConn.get(),
             "Select * from Activity_in_Scenario where Msp_ProjID = ", state.gMspProjId,
             " and Scenario_Num = ", scenario);
}

inline Recordset ActivityByUse(ModelToProject& state, const Value& useNum) {
  return Ask(state.gMspConn.get(),
             "Select * from Activity_in_Scenario where Msp_ProjID = ", state.gMspProjId,
             " and Use_Num = ", useNum);
}

inline Recordset LinksFrom(ModelToProject& state, const Value& origin) {
  return Ask(state.gMspConn.get(),
             "Select * from Links_in_Scenario where Msp_ProjID = ", state.gMspProjId,
             " and origin_num = ", origin);
}

inline Recordset LinksTo(ModelToProject& state, const Value& destination) {
  return Ask(state.gMspConn.get(),
             "Select * from Links_in_Scenario where Msp_ProjID = ", state.gMspProjId,
             " and Destination_Num = ", destination);
}

// The queue that the walks through junctions share. A walk goes on while it finds entries; the
// queue has no memory of what it held, so a junction on two ways is walked twice.
inline void StartJunctionQueue(ModelToProject& state, std::string first) {
  state.junctionQueueTop = 0;
  state.junctionQueue[0] = std::move(first);
}

// Error 9 beyond the queue's bound, which is how a walk in a circle ends.
inline void QueueJunction(ModelToProject& state, std::string entry) {
  ++state.junctionQueueTop;
  if (state.junctionQueueTop > kJunctionQueueBound) throw RunTimeError(kSubscriptOutOfRange);
  state.junctionQueue[static_cast<std::size_t>(state.junctionQueueTop)] = std::move(entry);
}

// Marks the objects that are resources, copies the marks to their occurrences and writes the
// resources.
void MarkResources(Pass& pass);
void WriteResources(Pass& pass);

// Gives each activity of the project its outline level and its P_Order, so that sorting by P_Order
// lists each UOB directly before its decomposition. OrderScenarios settles each scenario's depth.
void BuildOutline(Pass& pass);
void OrderScenarios(Pass& pass);

// Whether a scenario of the project decomposes the UOB.
bool IsDecomposed(Pass& pass, const Value& useNum);

// Takes out of the plan what facts or the user have not chosen, then numbers the tasks that remain.
void SelectPathsAndNumberTasks(ModelToProject& state);
void ChooseScenarios(ModelToProject& state);
// Takes a scenario and all that hangs below it out; error 6 beyond 32,767 scenarios.
void ExcludeScenario(ModelToProject& state, const Value& scenarioNum);

// Relation strings of 'Sync. AND' junctions: start-to-start of a fan-out, finish-to-finish of a
// fan-in, each on the first branch that no other such junction holds.
void BuildStartRelations(ModelToProject& state);
void BuildFinishRelations(ModelToProject& state);

// Each activity that goes to the plan, in the order of Project_ID.
void WriteTasks(Pass& pass);

// Writes the MSP_LINKS rows of a task. The items of its Predecessors field, each with a comma
// behind it; empty without any.
std::string WriteLinksOfTask(Pass& pass, Recordset& task);

// Walks back from the junction in junctionQueue(0) through all junctions to the first UOBs in the
// plan on each way, and links each to the task `succUID`. Gives their numbers, each with a comma
// behind it. A circle of junctions is error 9.
std::string CollectJunctionPredecessors(Pass& pass, const Value& succUID);

// Commas of a text; one in the first position ends the count.
std::int16_t CountCommas(const std::string& text);

// Resources of a task that has no decomposition, by its labor rule.
void WriteAssignments(Pass& pass, Recordset& task);

// TASK_OUTLINE_NUM of all tasks of levels 1 and 2 in the database.
void NumberOutline(ModelToProject& state);

}  // namespace merivane::translator
