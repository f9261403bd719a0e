// A model in a database in memory, and its translation there: nothing of the user's is touched.
#pragma once

#include <cstdint>
#include <string>

#include "platform/quiet_desktop.h"
#include "program/program.h"
#include "program/progress.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::inspect {

using namespace platform;
using namespace program;
using namespace translator;

class MemoryModel {
 public:
  // The template gives the tables. Progress is shown on `shown`, unless it is null, where the user
  // may cancel: RunCancelled comes up then. Errors of the template come up, here and below what the
  // machine refuses.
  MemoryModel(const std::string& templatePath, Desktop* shown);

  // False, with a Failure, where the reader shows a box that tells an error.
  bool Read(const std::string& textPath);
  // The model of a project of another database; errors of that database come up.
  void Take(const StoredModel& model);
  // The translation chooses the scenarios that the last one of that project chose.
  void ChooseAsBefore(Connection& stored, std::int32_t project);
  // Likewise. REQUIRES: a model was read or taken.
  bool Translate();
  // Which scenario has to be chosen, as a sentence; nothing is where the translation asks. Empty
  // where it didn't.
  const std::string& Question() const { return question_; }

  // The first box that told an error, on one line, Windows-1252.
  const std::string& Failure() const { return failure_; }
  Connection& Database() { return *program_.modelToProject.gMspConn; }
  static constexpr std::int16_t kProject = 1;

 private:
  template <typename Step>
  bool Succeeds(Step step);

  QuietDesktop desktop_;
  Program program_;
  program::Progress::Run run_;
  std::string question_;
  std::string failure_;
};

}  // namespace merivane::inspect
