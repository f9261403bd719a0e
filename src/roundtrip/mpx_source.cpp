#include "mpx_source.h"

#include <string>
#include <utility>

#include "going_on.h"
#include "mpx/mpx_format.h"
#include "program/error_boxes.h"
#include "runtime/conversions.h"
#include "runtime/dates.h"
#include "runtime/text.h"

namespace merivane::roundtrip {

using namespace mpx;

namespace {

// Where the fields of records 50 and 70 stand, as the field names of records 40 and 60 tell.
enum MpxLayout : std::int16_t {
  kOwnLayout = 0,
  kInitialsThird = 1,  // field 3 of record 40 is "Initials"
  kNameThird = 2,      // field 3 of record 40 is "Name"
  kManyTexts = 3,      // record 60 names "Text2"
};

constexpr std::int16_t kLastKnownRecord = 79;  // what lies above ends the reading

constexpr char kNoteLineBreak = '\x7F';

void ReadToRecord(MpxLines& lines, std::int16_t record) {
  do {
    lines.Read();
  } while (lines.Record() != record);
}

void SetLayoutByResourceFields(ProjectToModel& state, const MpxLines& record40) {
  const std::string third = record40.Field(3);
  if (third == "Initials") state.mpxLayout = kInitialsThird;
  if (third == "Name") state.mpxLayout = kNameThird;
}

void FindLayout(ProjectToModel& state) {
  MpxLines lines(state);
  ReadToRecord(lines, 40);
  SetLayoutByResourceFields(state, lines);
  ReadToRecord(lines, 60);
  if (HoldsNoCase(lines.Text(), "Text2")) state.mpxLayout = kManyTexts;
}

std::string OpenAtFirstLine(ProjectToModel& state, const std::string& fileName) {
  const std::int16_t number = state.files.FreeFile();
  state.files.OpenForInput(number, fileName);
  state.files.Reserve(number);
  state.mpxInFileNo = number;
  return state.files.ReadLine(number);
}

// The head's text is the lines up to and with record 40, joined. Reads to record 40, and sets
// defaultDurationUnits and once more mpxLayout on the way. Records 11, 30 and 40 must come in that
// order: error 62 otherwise.
PlanHead ReadMpxHeader(ProjectToModel& state, MpxLines& lines) {
  PlanHead header;
  const auto readTo = [&](std::int16_t record) {
    do {
      lines.Read();
      header.text += lines.Text();
    } while (lines.Record() != record);
  };
  readTo(11);
  state.defaultDurationUnits = ToInt16(lines.Field(2));
  readTo(30);
  header.startDate = ExtractStartDate(lines.Field(6), state.codePage);
  if (!IsDate(header.startDate)) header.startDate.clear();
  readTo(40);
  SetLayoutByResourceFields(state, lines);
  return header;
}

// The box, and the program ends.
[[noreturn]] void EndOnRefusal(Desktop& desktop, const NameRefusal& refusal) {
  desktop.ShowMessage(
      {.text = refusal.text, .icon = MessageIcon::kCritical, .title = refusal.title});
  RestoreMousePointer(desktop);
  desktop.EndProgram();
}

// A note with code 127 as line breaks. The last character is never copied.
std::string NoteWithLineBreaks(const std::string& note) {
  std::string text;
  for (std::size_t i = 0; i + 1 < note.size(); ++i) {
    if (note[i] == kNoteLineBreak) {
      text += kCrLf;
    } else {
      text += note[i];
    }
  }
  return text;
}

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
MergedTask TaskOf(const ProjectToModel& state, const MpxLines& lines, const TaskFields& fields,
                  const std::string& name) {
  MergedTask task;
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
    EndOnRefusal(state.desktop, *refusal);
  }
  MergedTask task = TaskOf(state, lines, fields, name);
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

std::string ResourceName(const ProjectToModel& state, const MpxLines& lines) {
  if (state.mpxLayout == kNameThird) return lines.Field(3);
  std::string name = lines.Field(4);
  if (state.mpxLayout == kInitialsThird && name.empty()) return lines.Field(3);
  return name;
}

Value Quantity(const ProjectToModel& state, const MpxLines& lines) {
  const std::string text =
      state.mpxLayout == kNameThird ? GetLastField(lines.Text()) : lines.Field(6);
  return text.empty() ? Value() : Value(text);
}

// Leaves the first line behind the note in hand.
std::optional<std::string> ReadNote(MpxLines& lines) {
  lines.Advance();
  if (lines.AtEnd() || lines.Record() != 51) return std::nullopt;
  std::string note = lines.TextBehindFirstComma().append(kCrLf);
  for (lines.Advance(); !lines.AtEnd() && lines.Record() == 0; lines.Advance()) {
    note.append(lines.Text()).append(kCrLf);
  }
  return NoteWithLineBreaks(note);
}

bool BelongsToResource(std::int16_t record) {
  return record == 0 || record == 51 || (record >= 55 && record <= 57);
}

// Leaves the first line behind the resource's records in hand.
void ReadResource(ProjectToModel& state, MpxLines& lines, WorkTables& tables) {
  const MergedResource resource{lines.Field(2), ResourceName(state, lines), Quantity(state, lines)};
  if (const auto refusal = RefusalOfResourceName(resource.name)) {
    EndOnRefusal(state.desktop, *refusal);
  }
  if (resource.name.empty()) {
    lines.Advance();
    return;
  }
  tables.BeginResource(resource);
  tables.EndResource(ReadNote(lines));
  while (!lines.AtEnd() && BelongsToResource(lines.Record())) lines.Advance();
}

}  // namespace

void OpenMpxFile(ProjectToModel& state, const std::string& fileName) {
  CloseMpxFile(state);
  state.mpxLayout = kOwnLayout;
  if (!Holds(OpenAtFirstLine(state, fileName), "MPX")) {
    state.desktop.ShowMessage({});
    state.desktop.EndProgram();
  }
  FindLayout(state);
  CloseMpxFile(state);
  OpenAtFirstLine(state, fileName);
}

void CloseMpxFile(ProjectToModel& state) {
  if (state.mpxInFileNo == 0) return;
  state.files.Close(state.mpxInFileNo);
  state.files.Release(state.mpxInFileNo);
  state.mpxInFileNo = 0;
}

void MpxLines::Read() {
  state_.progress.Step();
  state_.files.ReadLine(state_.mpxInFileNo, text_);
  ++number_;
  record_ = 0;
  if (listener_) listener_->OnLine(number_, text_);
  const auto takeRecord = [&] { record_ = RecordNumber(text_); };
  GoesThrough(state_.desktop, listener_, listener_ ? Stop() : MergeStop(), takeRecord);
}

void MpxLines::Advance() {
  atEnd_ = state_.files.AtEnd(state_.mpxInFileNo);
  if (!atEnd_) Read();
}

std::string MpxLines::Accepted(FoundField field) const {
  if (const auto* refusal = std::get_if<NameRefusal>(&field)) {
    EndOnRefusal(state_.desktop, *refusal);
  }
  return std::get<std::string>(std::move(field));
}

std::string MpxLines::Field(int n) const { return Accepted(GetField(text_, n)); }

std::string MpxLines::PredecessorField(int n) const {
  return Accepted(GetPredecessorField(text_, n));
}

std::string MpxLines::TextBehindFirstComma() const {
  const std::size_t comma = text_.find(',');
  return comma == std::string::npos ? std::string() : text_.substr(comma + 1);
}

PlanHead MpxSource::Open() {
  state_.progress.Begin("Reading the plan", CountLines(fileName_));
  OpenMpxFile(state_, fileName_);
  return ReadMpxHeader(state_, lines_);
}

// False for one that would end the merge, which is passed over.
template <typename Step>
bool MpxSource::HandRecord(const Step& step) {
  const MergeStop stop = listener_ ? lines_.Stop() : MergeStop();
  if (GoesThrough(state_.desktop, listener_, stop, step)) return true;
  if (lines_.Stop().line == stop.line) lines_.Advance();
  return false;
}

void MpxSource::HandResources(WorkTables& tables) {
  tables.BeginResources();
  lines_.Advance();
  while (!lines_.AtEnd() && lines_.Record() <= kLastKnownRecord) {
    if (lines_.Record() == 60) {
      tables.EndResources();
      return;
    }
    if (lines_.Record() == 50) {
      HandRecord([&] { ReadResource(state_, lines_, tables); });
    } else {
      lines_.Advance();
    }
  }
}

void MpxSource::HandTasks(WorkTables& tables) {
  const auto inTasks = [&] { return !lines_.AtEnd() && lines_.Record() <= kLastKnownRecord; };
  while (inTasks() && lines_.Record() != 70) lines_.Advance();
  while (inTasks()) {
    if (lines_.Record() == 70) {
      if (!HandRecord([&] { ReadTask(state_, lines_, tables, taskId_); })) taskId_ = 0;
      continue;
    }
    HandRecord([&] {
      if (lines_.Record() == 75) ReadAssignment(lines_, tables, taskId_);
      lines_.Advance();
    });
  }
}

}  // namespace merivane::roundtrip
