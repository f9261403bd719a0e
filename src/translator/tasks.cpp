#include "mpx/mpx_format.h"
#include "outline_numbers.h"
#include "runtime/rtf_notes.h"
#include "runtime/run_time_error.h"
#include "translation_steps.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::translator {

using namespace mpx;

namespace {

constexpr std::int64_t kTenthsOfMinuteInDay = 4800;
constexpr double kHoursInDay = 8;
constexpr int kDurationInDays = 7;

// From Activity_in_Scenario.
constexpr CopiedColumn kModelColumns[] = {
    {"KV7_PROCOCC_HEX", "Use_Num"},
    {"KV7_PROC_HEX", "Process_Num"},
    {"KV7_SCENARIO_HEX", "Scenario_Num"},
    {"KV7_PROCOCC_ID", "ID"},
    {"KV7_PROCOCC_REF", "Ref"},
    {"KV7_PROCOCC_FACT_LIST", "Fact_List"},
    {"KV7_PROCOCC_CONSTRAINT_LIST", "Constraint_List"},
    {"KV7_PROCOCC_DURATION", "Duration"},
    {"KV7_PROCOCC_LABOR_RULE", "Labor_rule"},
    {"KV7_PROCOCC_SEND_TO_PROJECT", "Send_to_Project"},
    {"KV7_PROCOCC_PROCESSED", "Processed"},
    {"KV7_PROCOCC_OUTLINE", "Outline"},
    {"KV7_PROCOCC_P_ORDER", "P_Order"},
    {"KV7_PROCOCC_COLUMN", "Column"},
    {"KV7_PROCOCC_ROW", "Row"},
    {"KV7_PROCOCC_SSRELS", "SSRels"},
    {"KV7_PROCOCC_FFRELS", "FFRels"},
    {"KV7_PROCOCC_PID", "Project_ID"},
};

// Sets taskHours and taskDays; the duration of record 70. The file keeps hundredths of a day where
// the database keeps whole days.
std::string TakeDuration(Pass& pass, const Value& duration) {
  if (!IsNumeric(duration)) {
    pass.taskHours = kHoursInDay;
    pass.taskDays = 1;
    return "1d";
  }
  const double days = ToDouble(duration);
  const std::string hundredths = FixedTwo(days);
  pass.taskHours = days * kHoursInDay;
  pass.taskDays = ToInt32(hundredths);
  return hundredths + "d";
}

// A name that the pool doesn't have is error 3021.
const Value& GlossaryOf(Pass& pass, const Value& name) {
  auto& glossaries = pass.memory.glossaries;
  const auto known = glossaries.find(Joined(name));
  if (known != glossaries.end()) return known->second;
  Recordset activity = Ask(pass.state.gMspConn.get(),
                           "Select * from Activity_Pool where Msp_ProjID = ", pass.state.gMspProjId,
                           " and Name = '", name, "'");
  return glossaries.emplace(Joined(name), activity.Field("Glossary")).first->second;
}

bool NoteFits(std::string_view glossary) { return glossary.size() <= kLongestGlossary; }

[[noreturn]] void RefuseNote(std::string_view glossary) {
  throw RunTimeError(kDatabaseError,
                     "The parameter's value has " + std::to_string(RtfNote(glossary).size()) +
                         " bytes, and its size is " + std::to_string(kMostNoteBytes) + ".");
}

Bytes NoteOfTask(std::string_view glossary) {
  const std::string note = RtfNote(glossary);
  return {note.begin(), note.end()};
}

void WriteNote(Pass& pass, const Value& name) {
  const Value& glossary = GlossaryOf(pass, name);
  if (glossary.IsNull()) return;
  pass.glossaryText = Joined(glossary);
  pass.PrintMpx(MpxNote(kMpxTaskNote, pass.glossaryText));
}

void FillTask(const Pass& pass, Recordset& activity, std::int32_t duration, Recordset& task) {
  const Value projectId = activity.Field("Project_ID");
  task.SetField("Proj_ID", pass.state.gMspProjId);
  task.SetField("TASK_UID", projectId);
  task.SetField("TASK_ID", projectId);
  task.SetField("TASK_Name", activity.Field("Name"));
  task.SetField("TASK_DUR", duration);
  task.SetField("TASK_DUR_FMT", kDurationInDays);
  task.SetField("TASK_OUTLINE_LEVEL", activity.Field("outline"));
  task.SetField("EXT_EDIT_REF_DATA", 1);
  task.SetField("TASK_HAS_NOTES", -1);
  if (NoteFits(pass.glossaryText)) {
    task.SetField("TASK_RTF_NOTES", NoteOfTask(pass.glossaryText));
  }
  CopyColumns(kModelColumns, activity, task);
}

void AddTask(Pass& pass, Recordset& activity, OutlineAhead& outline) {
  const bool isFirst = !pass.tasks.IsOpen();
  Recordset& tasks = pass.Opened(pass.tasks, "select * from MSP_TASKS");
  if (isFirst && (tasks.Bof() || tasks.Eof())) {
    tasks.Close();
    return;
  }
  const std::int32_t duration = ToInt32(pass.taskDays * kTenthsOfMinuteInDay);
  if (!pass.IsStored(PlanRow::kTask)) return;
  tasks.AddNew();
  FillTask(pass, activity, duration, tasks);
  outline.Number(tasks);
  tasks.Update();
  outline.Try(tasks);
}

void WriteTask(Pass& pass, Recordset& activity, OutlineAhead& outline) {
  const std::string duration = TakeDuration(pass, activity.Field("Duration"));
  std::string predecessors = WriteLinksOfTask(pass, activity);
  if (!predecessors.empty()) predecessors.pop_back();
  const MpxTask mpxLine = {
      activity.Field("Project_ID"), activity.Field("Name"), duration,
      activity.Field("outline"),    predecessors,           activity.Field("Use_Num")};
  pass.PrintMpx(MpxTaskRecord(mpxLine, pass.state.codePage));
  WriteNote(pass, mpxLine.name);
  AddTask(pass, activity, outline);
  WriteAssignments(pass, activity);
  // The note goes with the row in one; one that is too long fails behind the assignments.
  if (!NoteFits(pass.glossaryText)) RefuseNote(pass.glossaryText);
}

// The tasks are numbered from 1. Leaves the set at its start.
std::int64_t LastNumber(Recordset& activities) {
  if (activities.Eof()) return 0;
  activities.MoveLast();
  const std::int64_t last = ToInt32(activities.Field("Project_ID"));
  activities.MoveFirst();
  return last;
}

}  // namespace

void WriteTasks(Pass& pass) {
  Recordset activities =
      Ask(pass.state.gMspConn.get(),
          "Select * from Activity_in_Scenario where Msp_ProjID = ", pass.state.gMspProjId,
          " and send_to_project = 1 order by Project_ID");
  pass.PrintMpx(kMpxTaskFields);
  pass.PrintMpx(kMpxTaskFieldNumbers);
  pass.state.progress.Begin("Writing the tasks", LastNumber(activities));
  OutlineAhead outline(pass.state);
  try {
    for (; !activities.Eof(); activities.MoveNext(), pass.state.progress.Step()) {
      WriteTask(pass, activities, outline);
    }
  } catch (...) {
    outline.TakeBack(pass.state);
    throw;
  }
}

}  // namespace merivane::translator
