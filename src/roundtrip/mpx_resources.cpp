#include "mpx/mpx_fields.h"
#include "mpx_source.h"
#include "runtime/text.h"

namespace merivane::roundtrip {

using namespace mpx;

namespace {

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
  const PlanResource resource{lines.Field(2), ResourceName(state, lines), Quantity(state, lines)};
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

void MpxSource::HandResources(WorkTables& tables) {
  tables.BeginResources();
  lines_.Advance();
  while (!lines_.AtEnd() && lines_.Record() <= kLastKnownRecord) {
    if (lines_.Record() == 60) {
      tables.EndResources();
      return;
    }
    if (lines_.Record() == 50) {
      ReadResource(state_, lines_, tables);
    } else {
      lines_.Advance();
    }
  }
}

}  // namespace merivane::roundtrip
