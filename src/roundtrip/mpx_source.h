// An MPX file as the source of a plan.
#pragma once

#include <cstdint>
#include <string>

#include "mpx/mpx_format.h"
#include "program/program.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "work_tables.h"

namespace merivane::roundtrip {

using namespace program;
using namespace mpx;

// Opens the file under a free number, which stays its own until CloseMpxFile, sets mpxLayout and
// leaves the first line read. A file that a failed run left open is closed first. A file whose
// first line doesn't hold "MPX" ends the program; one without records 40 and 60 in that order is
// error 62.
void OpenMpxFile(ProjectToModel& state, const std::string& fileName);
void CloseMpxFile(ProjectToModel& state);

// The lines of the file behind those read so far, one in hand at a time; none before the first move
// and at the end.
class MpxLines {
 public:
  explicit MpxLines(ProjectToModel& state, MergeListener* listener = nullptr)
      : state_(state), listener_(listener) {}

  void Read();     // the next line; error 62 at the end
  void Advance();  // the next line, or none at the end
  bool AtEnd() const { return atEnd_; }

  const std::string& Text() const { return text_; }
  std::int16_t Record() const { return record_; }  // 0 for a line that continues a record
  // A name in the line that can't stand in the model ends the program with its box.
  std::string Field(int n) const;
  std::string PredecessorField(int n) const;
  std::string TextBehindFirstComma() const;

  // The line in hand as what would end the merge.
  MergeStop Stop() const { return {.line = number_, .text = text_}; }

 private:
  std::string Accepted(mpx::FoundField field) const;

  ProjectToModel& state_;
  MergeListener* listener_;
  std::string text_;
  std::size_t number_ = 1;  // of the line in hand; the first one tells the kind of file
  std::int16_t record_ = 0;
  bool atEnd_ = false;
};

class MpxSource : public PlanSource {
 public:
  // A listener (null: none) hears each line, and each record that would end the merge.
  MpxSource(ProjectToModel& state, const std::string& fileName, MergeListener* listener)
      : state_(state), listener_(listener), fileName_(fileName), lines_(state, listener) {}

  PlanHead Open() override;

  // Records 50 and 51, up to record 60; a file without one keeps the resources that it drops.
  void HandResources(WorkTables& tables) override;

  // Records 70, 71 and 75.
  void HandTasks(WorkTables& tables) override;

  bool HasTasks() const override { return true; }

 private:
  template <typename Step>
  bool HandRecord(const Step& step);

  ProjectToModel& state_;
  MergeListener* listener_;
  std::string fileName_;
  MpxLines lines_;           // each step starts at the line that the one before left in hand
  std::int32_t taskId_ = 0;  // of the last task, whose assignments follow it
};

}  // namespace merivane::roundtrip
