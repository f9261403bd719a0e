// A model text in a database of its own, for what looks at a model or its plan and keeps neither.
//
//   ScratchModel scratch(program);
//   scratch.Read("model.txt");
//   const ProcessModel model = ReadProcessModel(scratch.Database(), ScratchModel::kProject);
//   scratch.Translate();
//   const DatedPlan plan = ReadDatedPlan(scratch.Database(), ScratchModel::kProject, today);
#pragma once

#include <string>

#include "neutraltext/modGlobal.h"
#include "runtime/new_file.h"

namespace merivane::pictures {

using namespace neutraltext;

// Reads and translates as the dialogs do, but into a temporary copy of the template that is gone
// with the object, so that nothing of the user's is touched. The connection is the program's
// (modelToProject.gMspConn), which outlives this; results that were read through it stay. What the
// dialogs would show, the program's desktop shows; where they would end the program, ProgramEnd
// comes up, and what was read by then is in the database. Cancel comes up as RunCancelled.
// REQUIRES: the program's direction from model to plan is not in use meanwhile.
class ScratchModel {
 public:
  // Errors: 76 no folder of temporary files, and those of Workspace::CopyDatabase and of opening.
  explicit ScratchModel(Program& program);
  ~ScratchModel();
  ScratchModel(const ScratchModel&) = delete;
  ScratchModel& operator=(const ScratchModel&) = delete;

  // A text (UTF-8 path) in the read or in the written form, into the interim tables.
  void Read(const std::string& textFile);
  // A sentence (Windows-1252) on how far a reading came that did not get to the end of the text;
  // empty for one that did.
  const std::string& BreaksOff() const { return breaksOff_; }
  // What was read, into the MSP_ tables. Once.
  void Translate();

  Connection& Database() const { return *state_.gMspConn; }
  static constexpr std::int16_t kProject = 1;

 private:
  ModelToProject& state_;
  TemporaryFile database_;
  std::string breaksOff_;
};

}  // namespace merivane::pictures
