// A model text in a database of its own.
#pragma once

#include <string>

#include "neutraltext/modGlobal.h"
#include "runtime/new_file.h"

namespace merivane::pictures {

using namespace neutraltext;

// Reads and translates as the dialogs do, but into a temporary copy of the template that is gone
// with the object, so that nothing of the user's is touched. What the dialogs would show, the
// program's desktop shows; where they would end the program, ProgramEnd comes up. RunTimeErrors
// come up too. REQUIRES: the program's direction from model to plan is not in use meanwhile.
class ScratchModel {
 public:
  explicit ScratchModel(Program& program);
  ~ScratchModel();
  ScratchModel(const ScratchModel&) = delete;
  ScratchModel& operator=(const ScratchModel&) = delete;

  void Read(const std::string& textFile);
  // A sentence (Windows-1252) on how far a reading came that did not get to the end of the text;
  // empty for one that did.
  const std::string& BreaksOff() const { return breaksOff_; }
  void Translate();

  Connection& Database() const { return *state_.gMspConn; }
  static constexpr std::int16_t kProject = 1;

 private:
  ModelToProject& state_;
  TemporaryFile database_;
  std::string breaksOff_;
};

}  // namespace merivane::pictures
