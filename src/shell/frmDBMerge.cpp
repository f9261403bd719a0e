#include "shell/frmDBMerge.h"

#include "shell/project_list.h"

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

}  // namespace merivane::shell
