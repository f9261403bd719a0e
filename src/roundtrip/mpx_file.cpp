#include "mpx_file.h"

#include "mpx/mpx_durations.h"
#include "program/error_boxes.h"
#include "runtime/conversions.h"
#include "runtime/dates.h"
#include "runtime/text.h"

namespace merivane::roundtrip {

using namespace mpx;

namespace {

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

void ShowRefusal(Desktop& desktop, const NameRefusal& refusal) {
  desktop.ShowMessage(
      {.text = refusal.text, .icon = MessageIcon::kCritical, .title = refusal.title});
}

void EndOnRefusal(Desktop& desktop, const NameRefusal& refusal) {
  ShowRefusal(desktop, refusal);
  RestoreMousePointer(desktop);
  desktop.EndProgram();
}

void MpxLines::Read() {
  state_.progress.Step();
  text_ = state_.files.ReadLine(state_.mpxInFileNo);
  record_ = RecordNumber(text_);
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

}  // namespace merivane::roundtrip
