
#include <memory>

#include "project_lookup.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "shell/modal_forms.h"
#include "shell/named_files.h"

namespace merivane::batch {

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
    state.gInterimConn = std::make_unique<Connection>(state.workspace);
    state.gInterimConn->Open(ConnectionText(interim), OpenMode::kReadOnly);
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
