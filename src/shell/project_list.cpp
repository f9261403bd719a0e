#include "shell/project_list.h"

#include "runtime/conversions.h"
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
