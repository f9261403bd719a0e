#include "neutraltext/modProjectToIDEF3.h"
#include "program/error_boxes.h"
#include "runtime/conversions.h"
#include "writer_lines.h"

namespace merivane::neutraltext {

namespace {

void WriteSections(ProjectToModel& state) {
  const ReadScope reading(state.gProjectConn.get());
  state.scenarioCounter = 0;
  state.nextElementNum = CountProjectTasks(state);
  WriteProjectSummary(state);
  WriteProcessPool(state);
  WriteObjectPool(state);
  WritePools(state, state.gProjectConn.get());
  LineWriter out(state);
  out.Line("Scenario List");
  WriteScenarioLevel(state, 0, "0", 1);
  out.Line("End  Scenario List");
}

}  // namespace

bool GenerateTextFromProject(ProjectToModel& state) {
  try {
    WriteSections(state);
    state.files.Close(state.gOutFile);
    state.gProjectConn->Close();
    state.gProjectConn.reset();
    return true;
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
    return false;
  }
}

std::int16_t CountProjectTasks(ProjectToModel& state) {
  Recordset tasks;
  // The number touches AND: the store splits them.
  tasks.OpenStatic("SELECT * FROM [MSP_TASKS] WHERE TASK_UID > 0AND PROJ_ID = " +
                       std::to_string(state.gInterimProjId),
                   state.gProjectConn.get());
  return ToInt16(std::int64_t{tasks.RecordCount()});
}

}  // namespace merivane::neutraltext
