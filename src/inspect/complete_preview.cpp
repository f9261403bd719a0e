#include <memory>
#include <utility>

#include "inspect/merge_preview.h"
#include "platform/quiet_desktop.h"
#include "runtime/run_time_error.h"
#include "scratch_folder.h"

namespace merivane::inspect {

using namespace program;

std::vector<MergeChange> ChangesOf(const std::vector<reconcile::Remark>& remarks,
                                   const ModelSnapshot& before, const ModelSnapshot& after) {
  std::vector<MergeChange> changes;
  for (const reconcile::Remark& remark : remarks) {
    const auto number = remark.kind == "task" ? remark.row : std::nullopt;
    changes.push_back({ChangeKind::kNotTaken,
                       {remark.kind, number, remark.name},
                       remark.sentence,
                       remark.advice,
                       remark.row});
  }
  for (const auto& more : {ChangesBetween(before, after), TakenOutBetween(before, after)}) {
    changes.insert(changes.end(), more.begin(), more.end());
  }
  return changes;
}

MergePreview PreviewCompleteMerge(const std::string& planPath, const std::string& interimPath,
                                  std::int32_t project, const std::string& templatePath,
                                  bool withProof, Desktop* shown, MergeWitness* witness) {
  const ScratchFolder folder;
  const std::string text = folder.Path("model.txt");
  QuietDesktop desktop;
  desktop.templatePath = templatePath;
  if (shown != nullptr) desktop.ShowProgressOn(*shown);
  Program program(desktop);
  const program::Progress::Run run(program.progress);
  ProjectToModel& state = program.projectToModel;
  state.gInterimConn = std::make_unique<Connection>(state.workspace);
  program.workspace.HoldCopy(*state.gInterimConn, interimPath);
  state.gInterimProjId = project;
  state.gOutFile = state.files.FreeFile();
  state.files.OpenForOutput(state.gOutFile, text);
  MergePreview preview;
  const ModelSnapshot before = ReadSnapshot(*state.gInterimConn, project);
  if (witness != nullptr) witness->OnBefore(*state.gInterimConn);
  const reconcile::Kept kept = reconcile::MergeCompletely(state, planPath);
  preview.merged = kept.merged;
  if (kept.merged) {
    const ModelSnapshot after = ReadSnapshot(*state.gProjectConn, project);
    if (witness != nullptr) witness->OnAfter(*state.gProjectConn, before, after);
    preview.changes = ChangesOf(kept.remarks, before, after);
    if (withProof) {
      preview.proof = ProvePreview(*state.gProjectConn, project, text, templatePath, shown);
    }
  } else {
    const std::string why = desktop.boxes.empty() ? "" : desktop.boxes.back().text;
    preview.changes.push_back(
        {ChangeKind::kStop, {"plan", std::nullopt, ""}, why, "Mend the plan, and try again.", {}});
  }
  program.files.CloseAll();
  preview.boxes = std::move(desktop.boxes);
  return preview;
}

}  // namespace merivane::inspect
