#include <string>

#include "mpx/mpx_durations.h"
#include "mpx/mpx_fields.h"
#include "mpx_assignments.h"
#include "mpx_tables.h"
#include "runtime/conversions.h"
#include "sql_pieces.h"

namespace merivane::roundtrip {

using namespace mpx;

namespace {

constexpr int kNoField = 0;
constexpr int kLastField = -1;

struct TaskFields {
  int name;
  int duration;
  int outline;
  int text1;
  int predecessors;
};

TaskFields FieldsOf(std::int16_t layout) {
  switch (layout) {
    case kInitialsThird:
      return {3, 18, kLastField, 6, 4};
    case kNameThird:
      return {3, 9, 13, kNoField, 4};
    case kManyTexts:
      return {4, 5, 7, 42, 9};
    default:
      return {4, 5, 7, kLastField, 9};
  }
}

std::string FieldOf(const MpxLines& lines, int n) {
  if (n == kNoField) return {};
  return n == kLastField ? GetLastField(lines.Text()) : lines.Field(n);
}

void FillTask(ProjectToModel& state, const MpxLines& lines, const TaskFields& fields,
              const std::string& name, Recordset& task) {
  const std::string duration =
      ConvertDuration(FieldOf(lines, fields.duration), state.defaultDurationUnits);
  const std::string outline = FieldOf(lines, fields.outline);
  const std::string text1 = FieldOf(lines, fields.text1);
  task.SetField("PID", lines.Field(2));
  task.SetField("Name", name);
  task.SetField("Msp_ProjID", state.gInterimProjId);
  task.SetField("Duration", IsNumericText(duration) ? duration : "1");
  task.SetField("Outline", IsNumericText(outline) ? Value(outline) : Value(1));
  task.SetField("Predecessor",
                GetPredecessorField(state.desktop, lines.Text(), fields.predecessors));
  if (IsNumericText(text1)) task.SetField("Text1", text1);
}

// Leaves the first line behind the task and its note in hand. `currentPid` takes the task's number;
// a line that is passed over leaves it.
void ReadTask(ProjectToModel& state, MpxLines& lines, std::int32_t& currentPid) {
  const TaskFields fields = FieldsOf(state.mpxLayout);
  const bool numbered = IsNumericText(lines.Field(2));
  const std::string name = numbered ? lines.Field(fields.name) : std::string();
  if (name.empty()) {
    lines.Advance();
    return;
  }
  CheckTaskName(state.desktop, name);
  Recordset task;
  task.OpenDynamic("SELECT * FROM ProjectAct" + WhereMspProjId(state), state.gInterimConn.get());
  task.AddNew();
  FillTask(state, lines, fields, name, task);
  currentPid = ToInt32(lines.Field(2));
  lines.Advance();
  const bool noted = !lines.AtEnd() && lines.Record() == 71;
  if (noted) task.SetField("notes", NoteWithLineBreaks(lines.TextBehindFirstComma()));
  task.Update();
  if (noted) lines.Advance();
}

}  // namespace

void ReadTasks(ProjectToModel& state, MpxLines& lines) {
  const auto inTasks = [&] { return !lines.AtEnd() && lines.Record() <= kLastKnownRecord; };
  while (inTasks() && lines.Record() != 70) lines.Advance();
  std::int32_t currentPid = 0;
  while (inTasks()) {
    if (lines.Record() == 70) {
      ReadTask(state, lines, currentPid);
      continue;
    }
    if (lines.Record() == 75) ReadAssignment(state, lines, currentPid);
    lines.Advance();
  }
}

}  // namespace merivane::roundtrip
