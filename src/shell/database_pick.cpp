#include "shell/database_pick.h"

#include "runtime/code_page.h"
#include "runtime/conversions.h"
#include "shell/named_files.h"
#include "shell/run_result.h"
#include "store/recordset.h"

namespace merivane::shell {

namespace {

bool FirstTaskIsOutlined(Connection* connection) {
  Recordset tasks;
  tasks.OpenStatic("Select Task_UID, TASK_OUTLINE_NUM FROM [MSP_TASKS] Where Task_UID > 0",
                   connection);
  return tasks.RecordCount() >= 1 && !tasks.Field("TASK_OUTLINE_NUM").IsNull();
}

bool AddProjects(Desktop& desktop, Recordset& projects, ComboBox& combo) {
  projects.MoveLast();
  projects.MoveFirst();
  combo.enabled = true;
  combo.entries.clear();
  combo.listIndex.reset();
  for (; !projects.Eof(); projects.MoveNext()) {
    const Value name = projects.Field(1);
    const Value id = projects.Field(0);
    if (IsBlank(name) || IsBlank(id)) {
      desktop.ShowMessage(
          {"Project id or project name is empty.  Please check table MSP_PROJECTS."});
      return false;
    }
    combo.entries.push_back({ToText(name), ToInt32(id)});
  }
  return true;
}

}  // namespace

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
    Connection connection(workspace, emptied.path, OpenMode::kReadWrite);
    connection.BeginWrite();
    if (CountRows(connection, "select PROJ_ID from MSP_PROJECTS") > 0) {
      throw RunTimeError(kPermissionDenied,
                         FromUtf8(emptied.path + " holds a project again. The old one stays " +
                                  emptied.backup + "."));
    }
  }
  workspace.PutBack(emptied.backup, emptied.path, "");
}

bool LoadProjectList(Desktop& desktop, Connection* connection, ComboBox& combo,
                     std::optional<RunTimeError>& failure) try {
  failure.reset();
  Recordset projects;
  projects.OpenStatic("SELECT PROJ_ID, PROJ_NAME FROM [MSP_PROJECTS]", connection);
  bool usable = false;
  if (projects.RecordCount() >= 1) {
    if (!AddProjects(desktop, projects, combo)) return false;
    usable = FirstTaskIsOutlined(connection);
  }
  if (!usable) {
    desktop.ShowMessage(
        {"Database has no Project or no task_outline_num value.", MessageIcon::kCritical});
  }
  return usable;
} catch (const RunTimeError& error) {
  failure = error;
  return false;
}

}  // namespace merivane::shell
