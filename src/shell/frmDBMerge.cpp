#include "shell/frmDBMerge.h"

#include "shell/project_list.h"

namespace merivane::shell {

void frmDBMerge::OptMerge() {
  OptMergeSet = true;
  OptOverwriteSet = false;
  LabSelProjVisible = comboInterimProject.visible = comboInterimProject.enabled = true;
  state_.gRoundTripMerge = true;
  state_.gInterimProjId = 0;
  comboInterimProject.entries.clear();
  comboInterimProject.listIndex.reset();
  if (LoadProjectList(state_.desktop, state_.gInterimConn.get(), comboInterimProject)) {
    comboInterimProject.enabled = true;
  } else {
    state_.desktop.ShowMessage(
        {"The selected database cannot be merged.  Choose overwrite and retry."});
  }
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

}  // namespace merivane::shell
