// The MPX file under work: its layout, its lines, its header.
#pragma once

#include <cstdint>
#include <string>

#include "mpx/mpx_fields.h"
#include "plan_source.h"
#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

// Where the fields of records 50 and 70 stand, as the field names of records 40 and 60 tell.
enum MpxLayout : std::int16_t {
  kOwnLayout = 0,
  kInitialsThird = 1,  // field 3 of record 40 is "Initials"
  kNameThird = 2,      // field 3 of record 40 is "Name"
  kManyTexts = 3,      // record 60 names "Text2"
};

inline constexpr std::int16_t kLastKnownRecord = 79;  // what lies above ends the reading

// Opens the file under a free number, which stays its own until CloseMpxFile, sets mpxLayout and
// leaves the first line read. A file that a failed run left open is closed first. A file whose
// first line doesn't hold "MPX" ends the program; one without records 40 and 60 in that order is
// error 62.
void OpenMpxFile(ProjectToModel& state, const std::string& fileName);
void CloseMpxFile(ProjectToModel& state);

void ShowRefusal(Desktop& desktop, const mpx::NameRefusal& refusal);
// The box, and the program ends.
[[noreturn]] void EndOnRefusal(Desktop& desktop, const mpx::NameRefusal& refusal);

// The lines of the file behind those read so far, one in hand at a time; none before the first move
// and at the end.
class MpxLines {
 public:
  explicit MpxLines(ProjectToModel& state) : state_(state) {}

  void Read();     // the next line; error 62 at the end
  void Advance();  // the next line, or none at the end
  bool AtEnd() const { return atEnd_; }

  const std::string& Text() const { return text_; }
  std::int16_t Record() const { return record_; }  // 0 for a line that continues a record
  // A name in the line that can't stand in the model ends the program with its box.
  std::string Field(int n) const;
  std::string PredecessorField(int n) const;
  std::string TextBehindFirstComma() const;

 private:
  std::string Accepted(mpx::FoundField field) const;

  ProjectToModel& state_;
  std::string text_;
  std::int16_t record_ = 0;
  bool atEnd_ = false;
};

// The head's text is the lines up to and with record 40, joined. Reads to record 40, and sets
// defaultDurationUnits and once more mpxLayout on the way. Records 11, 30 and 40 must come in that
// order: error 62 otherwise.
PlanHead ReadMpxHeader(ProjectToModel& state, MpxLines& lines);

// A note with code 127 as line breaks. The last character is never copied.
std::string NoteWithLineBreaks(const std::string& note);

}  // namespace merivane::roundtrip
