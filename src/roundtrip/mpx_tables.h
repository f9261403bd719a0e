// The reader's passes over the records of an MPX file into the work tables. Each starts at the
// line that the one before left in hand.
#pragma once

#include "mpx_file.h"
#include "program/program.h"

namespace merivane::roundtrip {

// Empties the work tables, and when a model is rebuilt the plan's tables too; keeps the header.
void ClearWorkTables(ProjectToModel& state, const MpxHeader& header);

// Records 50 and 51 into ProjectRes and MSP_RESOURCES, up to record 60; there the resources that
// went to the plan and are no longer in it are deleted.
void ReadResources(ProjectToModel& state, MpxLines& lines);

// Records 70, 71 and 75 into ProjectAct and ProjectResReqts.
void ReadTasks(ProjectToModel& state, MpxLines& lines);

// The project's row: added where there is none, with its start date where there is one.
void StoreProjectHeader(ProjectToModel& state, const std::string& date);

// Sets the project's two counters to the greatest numbers given so far.
void UpdateMaxIds(ProjectToModel& state);

}  // namespace merivane::roundtrip
