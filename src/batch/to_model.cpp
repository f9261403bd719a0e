#include <algorithm>

#include "inspect/merge_preview.h"
#include "merge_report.h"
#include "project_lookup.h"
#include "runtime/code_page.h"
#include "runtime/conversions.h"
#include "session.h"
#include "shell/browse.h"
#include "shell/frmDBMerge.h"
#include "shell/source_proof.h"

namespace merivane::batch {

namespace {

bool SelectProject(ComboBox& combo, std::int32_t id) {
  const auto entry = std::find_if(combo.entries.begin(), combo.entries.end(),
                                  [id](const auto& e) { return e.itemData == id; });
  if (entry == combo.entries.end()) return false;
  combo.listIndex = static_cast<std::size_t>(entry - combo.entries.begin());
  return true;
}

// A name that the dialog refuses is tried before anything else, since nothing happens then.
bool OutputIsRefused(Session& session, const ToModelOptions& options) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  if (HasExtension(options.output, "txt")) return false;
  session.Browse(options.output, [&] { form.cmdBrowseText(); });
  return true;
}

bool OpenOutput(Session& session, const ToModelOptions& options) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  session.kept.KeepText(session.program.files, options.output);
  session.Browse(options.output, [&] { form.cmdBrowseText(); });
  return session.program.files.IsOpen(session.program.projectToModel.gOutFile);
}

// `report`: what is told in front of the closing line.
int PressOk(Session& session, const std::function<std::string()>& report = nullptr) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  form.cmdOK();
  const ExitStatus status = session.StatusOf(form.GenerateResult);
  if (status == kFailed) return status;
  if (form.Result.file.empty()) {
    session.Say(form.Result.text);
    return kFailed;
  }
  session.Report((report ? report() : "") + form.Result.text + session.Notes());
  return status;
}

int FromDatabase(Session& session, const ToModelOptions& options) {
  ProjectToModel& state = session.program.projectToModel;
  frmProjectToIDEF3& form = session.main.projectToModel;
  session.Browse(options.database, [&] { form.cmdBrowseDatabase(); });
  if (!state.gProjectConn || !state.gProjectConn->IsOpen()) {
    return session.Refuse(options.database + " holds no project that can be listed.");
  }
  std::string reason;
  std::vector<ProjectRow> projects;
  for (const auto& entry : form.comboProject.entries) {
    projects.push_back({entry.itemData, entry.name, 0});
  }
  const auto id = FindProject(projects, options.project, reason);
  if (!id || !form.txtDatabase.enabled) return session.Refuse(reason);
  SelectProject(form.comboProject, *id);
  form.comboProject_Click();
  if (!OpenOutput(session, options)) return kRefused;
  return PressOk(session);
}

// Presses the buttons of frmDBMerge. A list that can't be used leaves no project chosen.
void AnswerMerge(Session& session, frmDBMerge& form, const std::optional<std::int32_t>& project) {
  if (!project) {
    form.OptOverwrite();
    form.CmdOK();
    return;
  }
  const int boxes = session.log.MessageCount();
  form.OptMerge();
  if (session.log.MessageCount() == boxes && SelectProject(form.comboInterimProject, *project)) {
    form.comboInterimProject_Click();
    form.CmdOK();
  } else {
    form.CmdCancel();
  }
}

// The file that the plan comes from, picked on its tab. False where it is refused there.
bool BrowseFile(Session& session, const ToModelOptions& options) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  if (options.mpx.empty()) {
    form.SSTabInput = frmProjectToIDEF3::kXmlTab;
    session.Browse(options.xml, [&] { form.cmdBrowseXML(); });
    return !form.txtXML.text.empty();
  }
  form.SSTabInput = frmProjectToIDEF3::kMpxTab;
  session.Browse(options.mpx, [&] { form.cmdBrowseMPX(); });
  return !form.txtMPX.text.empty();
}

bool ProveFile(Session& session, const ToModelOptions& options) {
  ProjectToModel& state = session.program.projectToModel;
  if (options.mpx.empty()) return ProveXml(state, options.xml);
  if (ProveMpx(state, options.mpx)) return true;
  session.Say(options.mpx + " can't be read as an MPX file.");
  return false;
}

// Leaves `project` empty where nothing is to be merged. False where the project isn't there.
bool FindMergedProject(Session& session, const ToModelOptions& options,
                       std::optional<std::int32_t>& project) {
  if (options.merge.empty()) return true;
  if (!FileIsThere(options.interim)) {
    session.Say(options.interim + " isn't there: nothing to merge with.");
    return false;
  }
  std::string reason;
  try {
    project = FindProject(ListProjects(session.program.workspace, options.interim), options.merge,
                          reason);
  } catch (const RunTimeError& error) {
    reason = options.interim + ": " + ToUtf8(error.Description());
  }
  if (!project) session.Say(reason);
  return project.has_value();
}

void BrowseInterim(Session& session, const ToModelOptions& options) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  form.KeepBackup = false;
  const auto keep = [&session, &options] {
    session.kept.KeepDatabase(
        session.program.workspace, options.interim,
        options.noBackup ? KeptFiles::Copy::kUntilDone : KeptFiles::Copy::kBackup);
  };
  if (options.merge.empty()) {
    keep();
  } else {
    form.OnDatabaseTaken = keep;
  }
  session.Browse(options.interim, [&] {
    if (options.mpx.empty()) {
      form.cmdInterimDB_xml();
    } else {
      form.cmdInterimDB();
    }
  });
}

// Ends as the merge would, and shows the boxes that it would show.
int Preview(Session& session, const ToModelOptions& options, std::int32_t project) {
  const inspect::MergePreview preview = inspect::PreviewMerge(
      options.mpx.empty() ? options.xml : options.mpx, options.interim, project);
  if (options.json) {
    PrintPreviewJson(session.out, preview);
  } else {
    session.out << ChangesText(preview.changes);
  }
  for (const Message& box : preview.boxes) session.desktop.ShowMessage(box);
  return session.StatusOf(preview.merged);
}

// Told behind a merge: what it changed.
class MergeReport {
 public:
  MergeReport(Session& session, const ToModelOptions& options,
              const std::optional<std::int32_t>& project)
      : session_(session), options_(options), project_(session.quiet ? std::nullopt : project) {}

  void Begin() {
    if (project_) {
      before_ = inspect::ReadSnapshot(*session_.program.projectToModel.gInterimConn, *project_);
    }
  }

  std::string Text() const {
    if (!project_) return "";
    Connection connection(session_.program.workspace);
    connection.Open(ConnectionText(options_.interim), OpenMode::kReadOnly);
    return ChangesText(
        inspect::ChangesBetween(before_, inspect::ReadSnapshot(connection, *project_)));
  }

 private:
  Session& session_;
  const ToModelOptions& options_;
  std::optional<std::int32_t> project_;
  inspect::ModelSnapshot before_;
};

int FromFile(Session& session, const ToModelOptions& options) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  if (!BrowseFile(session, options)) return kRefused;
  std::optional<std::int32_t> project;
  if (!FindMergedProject(session, options, project)) return kRefused;
  if (!ProveFile(session, options)) return kFailed;
  if (options.dryRun) return Preview(session, options, *project);
  session.OnModalForm([&](ModalForm& shown) {
    if (auto* merge = dynamic_cast<frmDBMerge*>(&shown)) AnswerMerge(session, *merge, project);
  });
  if (!OpenOutput(session, options)) return kRefused;
  BrowseInterim(session, options);
  const TextBox& interim = options.mpx.empty() ? form.txtInterimDB_xml : form.txtInterimDB;
  const auto& connection = session.program.projectToModel.gInterimConn;
  if (interim.text.empty() || !connection || !connection->IsOpen()) {
    return session.Refuse(options.interim + " can't be used as the interim database.");
  }
  MergeReport report(session, options, project);
  report.Begin();
  return PressOk(session, [&] { return report.Text(); });
}

}  // namespace

int RunToModel(Session& session, const ToModelOptions& options) {
  const char* outputWord = options.force ? "" : "--force to replace it";
  if (!session.Admits({{"--database", options.database},
                       {"--mpx", options.mpx},
                       {"--xml", options.xml},
                       {"--interim", options.interim, !options.dryRun},
                       {"--output", options.output, true, outputWord}})) {
    return kRefused;
  }
  session.main.mnuProjectToIDEF3();
  const bool namesOutput = !options.dryRun || !options.output.empty();
  if (namesOutput && OutputIsRefused(session, options)) return kRefused;
  return options.database.empty() ? FromFile(session, options) : FromDatabase(session, options);
}

}  // namespace merivane::batch
