#include "project_lookup.h"

#include <memory>

#include "printable.h"
#include "runtime/code_page.h"
#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "shell/modal_forms.h"
#include "shell/named_files.h"
#include "shell/run_result.h"
#include "store/recordset.h"

namespace merivane::batch {

using namespace shell;

namespace {

std::string Names(const std::vector<ProjectRow>& projects) {
  std::string text;
  for (const ProjectRow& project : projects) {
    text += "\n  " + (project.id ? std::to_string(*project.id) : "-") + "  " +
            PrintableLine(ToUtf8(project.name));
  }
  return text.empty() ? " It holds no project." : " Its projects:" + text;
}

bool IsWholeNumber(const std::string& text) {
  return !text.empty() && text.size() <= 10 &&
         text.find_first_not_of("0123456789") == std::string::npos;
}

std::vector<std::int32_t> IdsOf(const std::vector<ProjectRow>& projects,
                                const std::string& idOrName) {
  std::vector<std::int32_t> byId;
  std::vector<std::int32_t> byName;
  const std::string name = FromUtf8(idOrName);
  for (const ProjectRow& project : projects) {
    if (!project.id) continue;
    if (IsWholeNumber(idOrName) && std::stoll(idOrName) == *project.id) byId.push_back(*project.id);
    if (project.name == name) byName.push_back(*project.id);
  }
  return byId.empty() ? byName : byId;
}

}  // namespace

std::vector<ProjectRow> ListProjects(Workspace& workspace, const std::string& path) {
  Connection connection(workspace, path, OpenMode::kReadOnly);
  Recordset rows;
  rows.OpenStatic("SELECT PROJ_ID, PROJ_NAME FROM [MSP_PROJECTS]", &connection);
  std::vector<ProjectRow> projects;
  for (; !rows.Eof(); rows.MoveNext()) {
    ProjectRow project;
    const Value id = rows.Field(0);
    project.name = Joined(rows.Field(1));
    if (!id.IsNull()) {
      project.id = ToInt32(id);
      project.tasks = CountRows(connection,
                                "SELECT TASK_UID FROM MSP_TASKS WHERE TASK_UID > 0 AND "
                                "PROJ_ID = " +
                                    Joined(id));
    }
    projects.push_back(std::move(project));
  }
  return projects;
}

std::optional<std::int32_t> FindProject(const std::vector<ProjectRow>& projects,
                                        const std::string& idOrName, std::string& reason) {
  const std::vector<std::int32_t> found = IdsOf(projects, idOrName);
  if (found.size() == 1) return found.front();
  reason = (found.empty() ? "no project '" : "more than one project '") + idOrName +
           "' in the database." + Names(projects);
  return std::nullopt;
}

std::optional<std::int32_t> FindMergedProject(Session& session, const std::string& interim,
                                              const std::string& idOrName) {
  if (!FileIsThere(interim)) {
    session.Say(interim + " isn't there: nothing to merge with.");
    return std::nullopt;
  }
  std::optional<std::int32_t> project;
  std::string reason;
  try {
    project = FindProject(ListProjects(session.program.workspace, interim), idOrName, reason);
  } catch (const RunTimeError& error) {
    reason = interim + ": " + ToUtf8(error.Description());
  }
  if (!project) session.Say(reason);
  return project;
}

std::optional<int> RefusalOfMerge(Session& session, const std::string& interim,
                                  std::int32_t project) {
  ProjectToModel& state = session.program.projectToModel;
  bool complete = false;  // the command line says it elsewhere
  frmDBMerge merge(state, complete);
  bool taken = false;
  if (HasExtension(interim, "mdb")) {
    state.gInterimConn =
        std::make_unique<Connection>(state.workspace, interim, OpenMode::kReadOnly);
    merge.MergeWith(project);
    state.gInterimConn.reset();
    taken = state.gInterimProjId == project;
  } else {
    session.Browse(interim, [&] { return session.main.projectToModel.PickInterimDb(); });
  }
  if (taken) return std::nullopt;
  if (merge.Failure) return session.Fail(interim, *merge.Failure);
  return session.Refuse(interim + " can't be used as the interim database.");
}

}  // namespace merivane::batch
