// Decides between a fresh interim database and a round trip merge.
#pragma once

#include <optional>

#include "program/program.h"
#include "runtime/run_time_error.h"
#include "shell/form.h"

namespace merivane::shell {

using namespace program;

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
  ComboBox comboInterimProject{{}, {}, false, false};

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

}  // namespace merivane::shell
