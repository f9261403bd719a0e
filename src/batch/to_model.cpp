#include <functional>
#include <utility>
#include <vector>

#include "inspect/merge_preview.h"
#include "merge_report.h"
#include "mspdi/plan_reader.h"
#include "project_lookup.h"
#include "session.h"
#include "shell/named_files.h"

namespace merivane::batch {

namespace {

// A name that the dialog refuses is tried before anything else, since nothing happens then.
bool OutputIsRefused(Session& session, const ToModelOptions& options) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  if (HasExtension(options.output, "txt")) return false;
  session.Browse(options.output, [&] { return form.PickText(); });
  return true;
}

// `writtenAs`: where the text stands until the run is over.
bool OpenOutput(Session& session, const ToModelOptions& options, std::string& writtenAs) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  writtenAs = session.kept.NewOutput(session.program.files, options.output).path;
  return session.Browse(options.output, [&] { return form.PickText(); });
}

int FromDatabase(Session& session, const ToModelOptions& options) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  if (!session.Browse(options.database, [&] { return form.PickDatabase(); })) {
    if (form.PickFailure) return session.Fail(options.database, *form.PickFailure);
    return session.Refuse(options.database + " holds no project that can be listed.");
  }
  std::string reason;
  std::vector<ProjectRow> projects;
  for (const auto& entry : form.Projects()) {
    projects.push_back({entry.itemData, entry.name, 0});
  }
  const auto id = FindProject(projects, options.project, reason);
  if (!id || !form.PickProject(*id)) return session.Refuse(reason);
  std::string text;
  if (!OpenOutput(session, options, text)) return kRefused;
  form.cmdOK();
  return session.AfterOk(form.GenerateResult, form.Result);
}

// The file that the plan comes from, picked on its tab. False where it is refused there.
bool BrowseFile(Session& session, const ToModelOptions& options) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  return options.mpx.empty() ? session.Browse(options.xml, [&] { return form.PickXml(); })
                             : session.Browse(options.mpx, [&] { return form.PickMpx(); });
}

bool ProveFile(Session& session, const ToModelOptions& options) {
  ProjectToModel& state = session.program.projectToModel;
  if (options.mpx.empty()) {
    std::optional<mspdi::FilePlan> plan = ProveXml(state, options.xml);
    const bool isProved = plan.has_value();
    if (!options.dryRun) session.main.projectToModel.XmlAhead = std::move(plan);
    return isProved;
  }
  if (ProveMpx(state, options.mpx)) return true;
  session.Say(options.mpx + " can't be read as an MPX file.");
  return false;
}

// Leaves `project` empty where nothing is to be merged. False where the project isn't there.
bool FindMerged(Session& session, const ToModelOptions& options,
                std::optional<std::int32_t>& project) {
  if (options.merge.empty()) return true;
  project = FindMergedProject(session, options.interim, options.merge);
  return project.has_value();
}

bool BrowseInterim(Session& session, const ToModelOptions& options) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  form.KeepBackup = false;
  const Copy copy = options.noBackup ? Copy::kUntilDone : Copy::kBackup;
  form.CopyOfReplaced = copy;
  session.KeepDatabase(form, options.interim, options.merge.empty() ? Copy::kUntilDone : copy);
  return session.Browse(options.interim, [&] { return form.PickInterimDb(); });
}

// None of a file that can't be read: the preview tells why.
mspdi::UntakenRows UntakenOf(const ToModelOptions& options) try {
  return options.mpx.empty() ? mspdi::ReadPlanFile(options.xml).untaken : mspdi::UntakenRows();
} catch (const RunTimeError& /*error*/) {
  return {};
}

// Ends as the merge would, and shows the boxes that it would show.
int Preview(Session& session, const ToModelOptions& options, std::int32_t project) {
  if (const auto refused = RefusalOfMerge(session, options.interim, project)) return *refused;
  const std::string& plan = options.mpx.empty() ? options.xml : options.mpx;
  const std::string templatePath = session.desktop.TemplatePath();
  inspect::MergePreview preview =
      options.complete
          ? inspect::PreviewCompleteMerge(plan, options.interim, project, templatePath,
                                          options.noProof ? Proof::kNone : Proof::kMade)
          : inspect::PreviewMerge(plan, options.interim, project, nullptr,
                                  options.noProof ? "" : templatePath);
  if (preview.proof && !options.complete) preview.proof = WithComplete(*std::move(preview.proof));
  if (options.json) {
    PrintPreviewJson(session.out, preview, UntakenOf(options));
  } else {
    session.out << ChangesText(preview.changes);
    if (preview.proof) session.out << ProofText(*preview.proof);
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

  void Begin() try {
    if (project_) {
      before_ = inspect::ReadSnapshot(*session_.program.projectToModel.gInterimConn, *project_);
    }
  } catch (const RunTimeError& error) {
    failure_ = error;
  }

  // Throws where the model can't be read, before the merge or behind it.
  std::string Text() const {
    if (!project_) return "";
    if (failure_) throw *failure_;
    Connection connection(session_.program.workspace, options_.interim, OpenMode::kReadOnly);
    const inspect::ModelSnapshot after = inspect::ReadSnapshot(connection, *project_);
    if (options_.complete) {
      const auto& merge = session_.main.projectToModel.CompleteMergeResult;
      return ChangesText(inspect::ChangesOf(merge, before_, after));
    }
    std::vector<inspect::MergeChange> changes = inspect::PassedOver(connection, *project_);
    for (auto& change : inspect::ChangesBetween(before_, after)) {
      changes.push_back(std::move(change));
    }
    return ChangesText(changes);
  }

 private:
  Session& session_;
  const ToModelOptions& options_;
  std::optional<std::int32_t> project_;
  inspect::ModelSnapshot before_;
  std::optional<RunTimeError> failure_;
};

// Of a merge that was run: the text, held against the plan.
std::string ProofOf(Session& session, const ToModelOptions& options, std::int32_t project,
                    const std::string& text) {
  Connection connection(session.program.workspace, options.interim, OpenMode::kReadOnly);
  inspect::MergeProof proof = inspect::ProveMerge(connection, project, text,
                                                  session.desktop.TemplatePath(), &session.desktop);
  return ProofText(options.complete ? proof : WithComplete(std::move(proof)));
}

int FromFile(Session& session, const ToModelOptions& options) {
  frmProjectToIDEF3& form = session.main.projectToModel;
  if (!BrowseFile(session, options)) return kRefused;
  std::optional<std::int32_t> project;
  if (!FindMerged(session, options, project)) return kRefused;
  if (!ProveFile(session, options)) return kFailed;
  if (options.dryRun) return Preview(session, options, *project);
  session.OnModalForm(
      ForEach{[&](frmDBMerge* merge) { project ? merge->MergeWith(*project) : merge->Overwrite(); },
              [](auto* /*other*/) {}});
  std::string text;
  if (!OpenOutput(session, options, text)) return kRefused;
  if (!BrowseInterim(session, options)) {
    if (form.PickFailure) return session.Fail(options.interim, *form.PickFailure);
    return session.Refuse(options.interim + " can't be used as the interim database.");
  }
  form.Complete = options.complete;
  MergeReport report(session, options, project);
  report.Begin();
  form.cmdOK();
  std::function<std::string()> proof;
  if (project && !options.noProof && !session.quiet) {
    proof = [&] { return ProofOf(session, options, *project, text); };
  }
  return session.AfterOk(
      form.GenerateResult, form.Result, [&] { return report.Text(); }, proof);
}

}  // namespace

int RunToModel(Session& session, const ToModelOptions& options) {
  if (!session.Admits(
          {{"--database", options.database},
           {"--mpx", options.mpx},
           {"--xml", options.xml},
           {"--interim", options.interim, options.dryRun ? FileUse::kRead : FileUse::kWrite},
           OutputNamed("--output", options.output, options.force)})) {
    return kRefused;
  }
  session.main.mnuProjectToIDEF3();
  const bool namesOutput = !options.dryRun || !options.output.empty();
  if (namesOutput && OutputIsRefused(session, options)) return kRefused;
  return options.database.empty() ? FromFile(session, options) : FromDatabase(session, options);
}

}  // namespace merivane::batch
