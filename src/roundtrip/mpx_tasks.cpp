#include <string>

#include "mpx/mpx_durations.h"
#include "mpx/mpx_fields.h"
#include "mpx_source.h"
#include "program/error_boxes.h"
#include "runtime/conversions.h"

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

// What a column would refuse fails before the list of predecessors is looked at.
PlanTask TaskOf(const ProjectToModel& state, const MpxLines& lines, const TaskFields& fields,
                const std::string& name) {
  PlanTask task;
  const std::string duration =
      ConvertDuration(FieldOf(lines, fields.duration), state.defaultDurationUnits);
  const std::string outline = FieldOf(lines, fields.outline);
  task.text1 = FieldOf(lines, fields.text1);
  task.id = ToInt32(lines.Field(2));
  task.name = name;
  task.duration = IsNumericText(duration) ? duration : "1";
  task.level = IsNumericText(outline) ? ToInt32(outline) : 1;
  task.predecessors = lines.PredecessorField(fields.predecessors);
  return task;
}

// Leaves the first line behind the task and its note in hand. `currentId` takes the task's number;
// a line that is passed over leaves it.
void ReadTask(ProjectToModel& state, MpxLines& lines, WorkTables& tables, std::int32_t& currentId) {
  const TaskFields fields = FieldsOf(state.mpxLayout);
  const bool numbered = IsNumericText(lines.Field(2));
  const std::string name = numbered ? lines.Field(fields.name) : std::string();
  if (name.empty()) {
    lines.Advance();
    return;
  }
  if (const auto refusal = RefusalOfTaskName(name)) {
    RestoreMousePointer(state.desktop);
    ShowRefusal(state.desktop, *refusal);
    state.desktop.EndProgram();
  }
  PlanTask task = TaskOf(state, lines, fields, name);
  currentId = task.id;
  lines.Advance();
  const bool noted = !lines.AtEnd() && lines.Record() == 71;
  if (noted) task.notes = NoteWithLineBreaks(lines.TextBehindFirstComma());
  tables.AddTask(task);
  if (noted) lines.Advance();
}

// One without a task, or with a field 2 or 3 that is no number, is passed over.
void ReadAssignment(const MpxLines& lines, WorkTables& tables, std::int32_t task) {
  const std::string resource = lines.Field(2);
  const std::string units = lines.Field(3);
  if (!IsNumericText(resource) || !IsNumericText(units) || task <= 0) return;
  tables.AddAssignment({.task = task, .resource = resource, .units = units});
}

}  // namespace

void MpxSource::HandTasks(WorkTables& tables) {
  const auto inTasks = [&] { return !lines_.AtEnd() && lines_.Record() <= kLastKnownRecord; };
  while (inTasks() && lines_.Record() != 70) lines_.Advance();
  std::int32_t currentId = 0;
  while (inTasks()) {
    if (lines_.Record() == 70) {
      ReadTask(state_, lines_, tables, currentId);
      continue;
    }
    if (lines_.Record() == 75) ReadAssignment(lines_, tables, currentId);
    lines_.Advance();
  }
}

}  // namespace merivane::roundtrip
