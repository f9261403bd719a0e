// Writers of Neutral Text from a project database; modGlobal.h is the way back. All write to
// gOutFile and read through gProjectConn unless a connection is handed over.
//
//   ProjectToModel& state = program.projectToModel;
//   state.gProjectConn = std::make_unique<Connection>(program.workspace);
//   state.gProjectConn->Open(ConnectionText("plan.mdb"), OpenMode::kReadOnly);
//   state.gInterimProjId = 1;
//   state.gOutFile = program.files.FreeFile();
//   program.files.OpenForOutput(state.gOutFile, "model.txt");
//   const bool whole = GenerateTextFromProject(state);
//
// The text is Windows-1252 in the written form, numbers have 16 bits, outline levels count from 1.
// Cycle times are the model's days as its tables have them; durations of a plan alone have no place
// in it. No row changes. The state owns the connection and the file; both are left open where a
// writer fails, and RunCancelled and ProgramEnd pass through all of them.
#pragma once

#include "program/program.h"

namespace merivane::neutraltext {

using namespace program;

// Writes the whole file of gInterimProjId, closes gOutFile and drops gProjectConn. True when no
// error reached its own guard; a section's failure shows its box and leaves that section cut short.
bool GenerateTextFromProject(ProjectToModel& state);

// Tasks of the project, the template's row left out; error 6 beyond 32,767.
std::int16_t CountProjectTasks(ProjectToModel& state);

// Each with its own guard: shows the description and ends the section.
void WriteProjectSummary(ProjectToModel& state);
void WriteProcessPool(ProjectToModel& state);
void WriteObjectPool(ProjectToModel& state);
void WritePools(ProjectToModel& state, Connection* connection);

// The scenario of the children of a task, and theirs: the task's UID and outline number, and the
// children's level. The first call passes 0, "0" and 1. A failure shows the description and ends
// the scenario that it happens in; error 6 of CountProjectTasks goes to the caller.
void WriteScenarioLevel(ProjectToModel& state, std::int16_t parentTaskUid,
                        const std::string& parentOutline, std::int16_t level);

// The flat list of a rebuilt model, with its "Scenario List" lines. Without a guard: errors go to
// the caller.
void WriteRebuiltScenarioList(ProjectToModel& state, Connection* connection);

// Writes the whole file of gInterimProjId from the interim tables alone, so that units and objects
// that never went to a plan stand in it too, and closes gOutFile. A unit's cycle time and labor
// rule stand at its last object, whatever that is; a unit without objects can't have them. The OSTN
// list isn't written. Errors go to the caller, but for those of the summary and of WritePools,
// which have guards.
void WriteWholeModel(ProjectToModel& state);

}  // namespace merivane::neutraltext
