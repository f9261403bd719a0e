#include <algorithm>

#include "merge_statements.h"
#include "merge_steps.h"
#include "mpx_source.h"
#include "neutraltext/modProjectToIDEF3.h"
#include "program/error_boxes.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "runtime/conversions.h"
#include "runtime/text.h"
#include "xml_source.h"

namespace merivane::roundtrip {

using namespace neutraltext;

namespace {

// Adds the row of the project where there is none; sets its start date where there is one.
void StoreProjectHeader(ProjectToModel& state, const std::string& date) {
  Recordset project = Ask(state.gInterimConn.get(),
                          "SELECT * FROM MSP_Projects Where Proj_ID = ", state.gInterimProjId);
  if (project.Eof()) {
    project.AddNew();
    project.SetField("Proj_ID", state.gInterimProjId);
    project.SetField("PROJ_PROP_AUTHOR", "Merivane");
    project.SetField("KV7_PROJ_Max_Use_Id", 0);
    project.SetField("KV7_PROJ_Max_Act_Id", 0);
  }
  if (!date.empty()) project.SetField("KV7_PROJ_Start_Date", date);
  project.Update();
}

// 0 where no row has a number.
std::int16_t MaxId(ProjectToModel& state, const std::string& sql) {
  Recordset maximum = AskStatic(state.gInterimConn.get(), sql);
  const Value highest = maximum.Field("Max_ID");
  return highest.IsNull() ? std::int16_t{0} : ToInt16(highest);
}

// Sets the two counters of the project to the greatest numbers given so far.
void UpdateMaxIds(ProjectToModel& state) {
  const std::int16_t activity =
      MaxId(state, "SELECT Max(Num) as Max_ID FROM Activity_Pool" + WhereMspProjId(state));
  const std::int16_t task =
      MaxId(state, "SELECT Max(KV7_PROCOCC_HEX) as Max_ID FROM MSP_TASKS where TASK_UID > 0" +
                       AndProjId(state));
  const std::int16_t link =
      MaxId(state, "SELECT Max(Num) as Max_ID FROM Links_in_Scenario" + WhereMspProjId(state));
  const std::int16_t junction =
      MaxId(state, "SELECT Max(Num) as Max_ID FROM Junctions_in_Scenario" + WhereMspProjId(state));

  Recordset project = Ask(state.gInterimConn.get(),
                          "SELECT * FROM MSP_PROJECTS Where Proj_ID = ", state.gInterimProjId);
  if (project.Eof()) {
    project.AddNew();
    project.SetField("Proj_ID", state.gInterimProjId);
  }
  project.SetField("KV7_PROJ_Max_Use_ID", std::max({task, link, junction}));
  project.SetField("KV7_PROJ_Max_Act_ID", activity);
  project.Update();
  state.greatestNumbers.reset();
}

// Into the work tables; gives the project's start date.
std::string ReadPlan(ProjectToModel& state, PlanSource& source) {
  const PlanHead head = source.Open();
  WorkTables tables(state);
  tables.Clear(head);
  source.HandResources(tables);
  source.HandTasks(tables);
  return head.startDate;
}

void MergePlan(ProjectToModel& state, const std::string& startDate, bool hasTasks,
               MergeListener* listener) {
  StoreProjectHeader(state, startDate);
  UpdateMaxIds(state);
  const auto merge = [&] {
    if (hasTasks) {
      BringBackTasks(state, listener);
      MergeLinks(state, listener);
    }
    MergeResourceRequirements(state);
    state.progress.Begin("Clearing up junctions", 0);
    RemoveDanglingJunctions(state);
    CollapseJunctions(state);
  };
  WithEnd(state, merge, [&] { StoreNumbers(state); });
}

void WriteModel(ProjectToModel& state) {
  const ReadScope reading(state.gProjectConn.get());
  state.nextElementNum = CountProjectTasks(state);
  WriteProjectSummary(state);
  WriteProcessPool(state);
  WriteObjectPool(state);
  WritePools(state, state.gProjectConn.get());
  if (state.gRebuildModel == 1) {
    WriteRebuiltScenarioList(state, state.gProjectConn.get());
  } else {
    state.files.Print(state.gOutFile, "Scenario List");
    WriteScenarioLevel(state, 0, "0", 1);
    state.files.Print(state.gOutFile, "End  Scenario List");
  }
  state.files.Close(state.gOutFile);
}

// The writers read through a second connection to the file, which holds all that was merged.
void ReopenForWriters(ProjectToModel& state) {
  state.gInterimConn->Close();
  state.gProjectConn = std::make_unique<Connection>(state.workspace);
  state.gProjectConn->Open(ConnectionText(state.gInterimConn->DatabaseName()));
}

bool WriteProjects(ProjectToModel& state) {
  Recordset projects = AskStatic(
      state.gProjectConn.get(),
      "SELECT PROJ_ID, PROJ_NAME FROM [MSP_PROJECTS] Where PROJ_ID = ", state.gInterimProjId);
  if (projects.Eof()) {
    state.desktop.ShowMessage(
        {.text = "Database has no Project", .icon = MessageIcon::kCritical, .title = {}});
    return false;
  }
  for (; !projects.Eof(); projects.MoveNext()) WriteModel(state);
  return true;
}

bool TranslatePlan(ProjectToModel& state, PlanSource& source, std::int16_t mergeFlag,
                   MergeListener* listener) {
  try {
    if (mergeFlag == 0) state.gRebuildModel = 1;
    if (mergeFlag == -1) state.gRebuildModel = 0;
    state.scenarioCounter = 0;
    const std::string startDate = ReadPlan(state, source);
    MergePlan(state, startDate, source.HasTasks(), listener);
    CloseMpxFile(state);
    ReopenForWriters(state);
    return WriteProjects(state);
  } catch (const PlanRefused&) {
    return false;
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
    return false;
  }
}

// Alone, for what looks at a plan.
bool ReadOnly(ProjectToModel& state, PlanSource& source) {
  try {
    state.gRebuildModel = 1;  // no model is held against it
    ReadPlan(state, source);
    CloseMpxFile(state);
    return true;
  } catch (const PlanRefused&) {
    return false;
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
    return false;
  }
}

}  // namespace

bool ReadMpx(ProjectToModel& state, const std::string& mpxFileName, MergeListener* listener) {
  MpxSource source(state, mpxFileName, listener);
  return ReadOnly(state, source);
}

bool ReadXml(ProjectToModel& state, const std::string& xmlFileName, MergeListener* listener) {
  XmlSource source(state, xmlFileName, listener);
  return ReadOnly(state, source);
}

void ProveMpxFile(ProjectToModel& state, const std::string& mpxFileName) {
  OpenMpxFile(state, mpxFileName);
  CloseMpxFile(state);
}

bool TranslateMpx(ProjectToModel& state, const std::string& mpxFileName,
                  const std::string& /*interimFileName*/, std::int16_t mergeFlag,
                  MergeListener* listener) {
  MpxSource source(state, mpxFileName, listener);
  return TranslatePlan(state, source, mergeFlag, listener);
}

bool TranslateXml(ProjectToModel& state, const std::string& xmlFileName, std::int16_t mergeFlag,
                  MergeListener* listener, std::optional<mspdi::FilePlan> ahead) {
  XmlSource source = ahead ? XmlSource(state, *std::move(ahead), listener)
                           : XmlSource(state, xmlFileName, listener);
  return TranslatePlan(state, source, mergeFlag, listener);
}

std::optional<mspdi::FilePlan> ReadAhead(const std::string& fileName) {
  if (!HoldsNoCase(Right(fileName, 4), ".xml")) return std::nullopt;
  return mspdi::ReadPlanFile(fileName);
}

void TakePlan(ProjectToModel& state, const std::string& fileName,
              std::optional<mspdi::FilePlan> ahead, MergeListener* listener) {
  state.gRebuildModel = 0;
  if (ahead) {
    XmlSource source(state, *std::move(ahead), listener);
    ReadPlan(state, source);
    return;
  }
  MpxSource source(state, fileName, listener);
  ReadPlan(state, source);
  CloseMpxFile(state);
}

}  // namespace merivane::roundtrip
