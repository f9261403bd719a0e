// The steps of the pass from a model to a plan, in the order in which it takes them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "pass.h"

namespace merivane::translator {

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

// A glossary as a task's RTF note, which has at most 20,000 bytes.
Bytes NoteOfTask(std::string_view glossary);
bool NoteFits(std::string_view glossary);
[[noreturn]] void RefuseNote(std::string_view glossary);

// TASK_OUTLINE_NUM of all tasks of levels 1 and 2 in the database.
void NumberOutline(ModelToProject& state);

}  // namespace merivane::translator
