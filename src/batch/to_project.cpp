#include <algorithm>

#include "neutraltext/modGlobal.h"
#include "project_lookup.h"
#include "scenario_chooser.h"
#include "session.h"
#include "shell/named_files.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::batch {

using namespace neutraltext;
using namespace translator;

namespace {

// Why the database can't take a further project; nothing where it can. Another program may have
// added one since it was picked: the number is taken for good once the database is this run's.
std::optional<std::string> AppendRefusal(Session& session, const ToProjectOptions& options) {
  const auto projects = ListProjects(session.program.workspace, options.database);
  if (projects.empty()) {
    return options.database + " holds no project: say --overwrite instead of --append.";
  }
  const auto& last = projects.back().id;
  const std::int32_t number = last ? *last + 1 : 0;
  const bool taken = std::any_of(projects.begin(), projects.end(),
                                 [&](const ProjectRow& project) { return project.id == number; });
  constexpr std::int32_t kMost = 32767;
  if (number > 0 && number <= kMost && !taken) return std::nullopt;
  return options.database + " can't take a further project: its number would follow that of the " +
         "last one, " + (last ? std::to_string(*last) : "none") +
         ", must be free and end at 32767.";
}

// A database that came up since the names were admitted is neither replaced nor changed.
void AnswerAppend(frmDbFileAppend& question, const ToProjectOptions& options) {
  if (options.append) {
    question.CmdAppend();
  } else if (options.overwrite) {
    question.CmdOverwrite();
  } else {
    throw RunTimeError(kPermissionDenied);
  }
}

bool BrowseDatabase(Session& session, const ToProjectOptions& options) {
  frmIDEF3ToProject& form = session.main.modelToProject;
  form.KeepBackup = false;
  session.KeepDatabase(form, options.database, Copy::kUntilDone);
  return session.Browse(options.database, [&] { return form.PickDatabase(); });
}

// The XML is written, like the MPX file, whenever its box holds a name, whatever tab is in front.
// False where the dialog refuses a name.
bool BrowseFiles(Session& session, const ToProjectOptions& options) {
  frmIDEF3ToProject& form = session.main.modelToProject;
  if (!options.xml.empty()) {
    if (!session.Browse(options.xml, [&] { return form.PickXml(); })) return false;
    session.kept.NewOutput(session.program.files, options.xml);
  }
  if (!options.mpx.empty()) {
    if (!session.Browse(options.mpx, [&] { return form.PickMpx(); })) return false;
    session.kept.NewOutput(session.program.files, options.mpx);
  }
  return true;
}

void SettleForm(Session& session, const ToProjectOptions& options) {
  if (!options.from.empty()) return;
  session.program.modelToProject.takesOwnText = options.ownText;
  if (options.ownText || !IsOwnText(options.model)) return;
  session.Say(options.model +
              " is in the form that Merivane writes and Celvar imports. Say --own-text to have it "
              "read.");
}

// The project of --from; nothing, with the reason, where it holds no model.
std::optional<StoredModel> FindModel(Session& session, const ToProjectOptions& options,
                                     std::string& reason) try {
  Workspace& workspace = session.program.workspace;
  const auto project = FindProject(ListProjects(workspace, options.from), options.project, reason);
  if (!project) return std::nullopt;
  const StoredModel model{options.from, *project};
  if (HoldsModel(workspace, model)) return model;
  reason = options.from +
           " holds no model of that project, only a plan: to-model --database makes "
           "a model text of it.";
  return std::nullopt;
} catch (const RunTimeError& error) {
  reason = options.from + " can't be used: " + Session::ReasonOf(options.from, error);
  return std::nullopt;
}

bool PickSource(Session& session, const ToProjectOptions& options) {
  frmIDEF3ToProject& form = session.main.modelToProject;
  if (options.from.empty()) return session.Browse(options.model, [&] { return form.PickModel(); });
  std::string reason;
  form.Stored = FindModel(session, options, reason);
  if (!form.Stored) session.Say(reason);
  return form.Stored.has_value();
}

int Translate(Session& session, const ToProjectOptions& options) {
  frmIDEF3ToProject& form = session.main.modelToProject;
  session.main.mnuIDEF3ToProject();
  if (!PickSource(session, options)) return kRefused;
  if (!BrowseFiles(session, options)) return kRefused;
  SettleForm(session, options);
  if (!form.Stored && !ProveModelText(session.program.modelToProject, options.model))
    return kFailed;
  if (!BrowseDatabase(session, options)) return kRefused;
  const std::optional<RunTimeError>& failure = form.PickFailure;
  if (failure && IsMachineFault(failure->Number())) return session.Fail(options.database, *failure);
  if (!session.program.modelToProject.gOverwriteDb) {
    if (const auto refusal = AppendRefusal(session, options)) return session.Refuse(*refusal);
  }
  if (failure) return session.Fail(options.database, *failure);
  const auto& connection = session.program.modelToProject.gMspConn;
  if (!connection || !connection->IsOpen()) {
    return session.Refuse(options.database + " can't be opened or replaced.");
  }
  form.cmdOK();
  return session.AfterOk(form.GenerateResult, form.Result);
}

}  // namespace

int RunToProject(Session& session, const ToProjectOptions& options) {
  const char* databaseWord = options.overwrite || options.append ? "" : "--overwrite or --append";
  if (!session.Admits({{"the model", options.model},
                       {"--from", options.from},
                       {"--database", options.database, FileUse::kWrite, databaseWord},
                       OutputNamed("--mpx", options.mpx, options.force),
                       OutputNamed("--xml", options.xml, options.force)})) {
    return kRefused;
  }
  ScenarioChooser chooser(session, options.choices);
  session.OnModalForm(ForEach{[&](frmDbFileAppend* question) { AnswerAppend(*question, options); },
                              [&](multi* scenarios) { chooser.Answer(*scenarios); },
                              [](auto* /*other*/) {}});
  return Translate(session, options);
}

}  // namespace merivane::batch
