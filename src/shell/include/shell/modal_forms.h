// The forms that are shown modally: a closed set.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "platform/desktop.h"
#include "program/program.h"
#include "runtime/run_time_error.h"
#include "shell/form.h"
#include "translator/multi.h"

namespace merivane::shell {

using namespace program;
using namespace translator;

// Asks whether an existing database is overwritten or gets a further project.
// Caption "Database Create Options". Closing it by its frame leaves the flag as it stood.
class frmDbFileAppend : public ModalForm {
 public:
  static constexpr int kHelpContextId = 5000;

  frmDbFileAppend(bool& gOverwriteDb, std::string fileName)
      : FileName(std::move(fileName)), gOverwriteDb_(gOverwriteDb) {}

  const std::string FileName;  // of the database, UTF-8

  void CmdAppend() {
    gOverwriteDb_ = false;
    Unload();
  }
  void CmdOverwrite() {
    gOverwriteDb_ = true;
    Unload();
  }

 private:
  bool& gOverwriteDb_;
};

// Decides between a fresh interim database and a round trip merge.
// Caption "Interim DB Creating Options". CmdCancel leaves gRoundTripMerge as it stood.
class frmDBMerge : public ModalForm {
 public:
  static constexpr int kHelpContextId = 6000;
  static constexpr int kHelpButtonContextId = 6001;

  // `complete`: the last answer, and once a merge is chosen this one's.
  frmDBMerge(ProjectToModel& state, bool& complete)
      : ChkComplete(complete), state_(state), complete_(complete) {}

  bool ChkComplete;  // the merge keeps everything that the plan holds

  bool OptOverwriteSet = false;
  bool OptMergeSet = false;
  bool LabSelProjVisible = false;
  ComboBox comboInterimProject{.enabled = false, .visible = false};

  std::optional<RunTimeError> Failure;  // of the list; no box tells it

  void Load() override { comboInterimProject.enabled = false; }
  bool OptMerge();  // False, behind a box, where the list can't be used
  void OptOverwrite();
  void comboInterimProject_Click();  // after an entry was selected
  void CmdOK();
  void CmdCancel() { Unload(); }

  // The two answers in one. A project that the list doesn't offer cancels the form.
  void Overwrite();
  void MergeWith(std::int32_t project);

 private:
  ProjectToModel& state_;
  bool& complete_;
};

using AnyModalForm = std::variant<frmDbFileAppend*, frmDBMerge*, multi*>;

// Which of them a desktop is to show. REQUIRES: it is one of them.
AnyModalForm AsAny(ModalForm& form);

// For std::visit: a function for each form.
template <typename... Functions>
struct ForEach : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
ForEach(Functions...) -> ForEach<Functions...>;

}  // namespace merivane::shell
