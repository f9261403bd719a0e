#include "shell/database_pick.h"

#include "runtime/code_page.h"
#include "shell/browse.h"
#include "shell/run_result.h"

namespace merivane::shell {

PickNote DatabasePick::Note(const std::string& open) const {
  PickNote note;
  if (!backup_.empty()) {
    note.text = path_ + " was emptied; the old one is " + backup_;
    note.emptied = {path_, backup_};
  }
  if (!failure_) return note;
  note.text += (note.text.empty() ? "" : ". ") + Refusal();
  if (!replaced_) note.text += " Nothing was changed.";
  if (!open.empty()) note.text += " OK would still write into " + open + ".";
  return note;
}

std::string DatabasePick::Refusal() const {
  if (!failure_) return {};
  std::string why = ToUtf8(failure_->Description());
  if (!why.ends_with('.')) why += '.';
  return path_ + " can't be used: " + why;
}

void PutBackEmptied(Workspace& workspace, const EmptiedDatabase& emptied) {
  if (!FileIsThere(emptied.backup)) throw FileError(kFileNotFound, emptied.backup);
  if (FileIsThere(emptied.path)) {
    Connection connection(workspace);
    connection.Open(ConnectionText(emptied.path));
    connection.BeginWrite();
    if (CountRows(connection, "select PROJ_ID from MSP_PROJECTS") > 0) {
      throw RunTimeError(kPermissionDenied,
                         FromUtf8(emptied.path + " holds a project again. The old one stays " +
                                  emptied.backup + "."));
    }
  }
  workspace.PutBack(emptied.backup, emptied.path, "");
}

}  // namespace merivane::shell
