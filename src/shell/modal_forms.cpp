#include "shell/modal_forms.h"

#include <stdexcept>

#include "shell/database_pick.h"

namespace merivane::shell {

bool frmDBMerge::OptMerge() {
  OptMergeSet = true;
  OptOverwriteSet = false;
  LabSelProjVisible = comboInterimProject.visible = comboInterimProject.enabled = true;
  state_.gRoundTripMerge = true;
  state_.gInterimProjId = 0;
  comboInterimProject.entries.clear();
  comboInterimProject.listIndex.reset();
  if (LoadProjectList(state_.desktop, state_.gInterimConn.get(), comboInterimProject, Failure)) {
    comboInterimProject.enabled = true;
    return true;
  }
  state_.desktop.ShowMessage(
      {"The selected database cannot be merged.  Choose overwrite and retry."});
  return false;
}

void frmDBMerge::OptOverwrite() {
  OptOverwriteSet = true;
  OptMergeSet = false;
  LabSelProjVisible = comboInterimProject.visible = comboInterimProject.enabled = false;
}

void frmDBMerge::comboInterimProject_Click() {
  if (!comboInterimProject.listIndex) return;
  state_.gInterimProjId = comboInterimProject.entries[*comboInterimProject.listIndex].itemData;
}

void frmDBMerge::CmdOK() {
  if (OptMergeSet && comboInterimProject.listIndex) {
    state_.gRoundTripMerge = true;
    complete_ = ChkComplete;
    Unload();
    return;
  }
  state_.gRoundTripMerge = false;
  if (OptMergeSet) {
    state_.desktop.ShowMessage({"Please Select a Project to be merged."});
    return;
  }
  state_.gInterimProjId = 1;
  Unload();
}

void frmDBMerge::Overwrite() {
  OptOverwrite();
  CmdOK();
}

void frmDBMerge::MergeWith(std::int32_t project) {
  if (OptMerge() && comboInterimProject.Select(project)) {
    comboInterimProject_Click();
    CmdOK();
  } else {
    CmdCancel();
  }
}

AnyModalForm AsAny(ModalForm& form) {
  if (auto* append = dynamic_cast<frmDbFileAppend*>(&form)) return append;
  if (auto* merge = dynamic_cast<frmDBMerge*>(&form)) return merge;
  if (auto* chooser = dynamic_cast<multi*>(&form)) return chooser;
  throw std::logic_error("a form that is not one of the modal ones");
}

}  // namespace merivane::shell
