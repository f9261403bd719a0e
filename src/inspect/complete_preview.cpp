#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "inspect/merge_preview.h"
#include "platform/quiet_desktop.h"
#include "runtime/run_time_error.h"
#include "scratch_folder.h"

namespace merivane::inspect {

using namespace program;

namespace {

template <typename Row>
void GiveNumbers(std::map<std::int32_t, Row>& rows,
                 const std::map<std::int32_t, std::int32_t>& numbers) {
  for (const auto& [before, number] : numbers) {
    auto row = rows.extract(before);
    if (row.empty()) continue;
    row.key() = number;
    rows.insert(std::move(row));
  }
}

// The same model, by the numbers that its units have now.
ModelSnapshot WithNumbers(ModelSnapshot model,
                          const std::map<std::int32_t, std::int32_t>& numbers) {
  if (numbers.empty()) return model;
  GiveNumbers(model.units, numbers);
  GiveNumbers(model.unitNames, numbers);
  const auto numberOf = [&](std::int32_t before) {
    const auto number = numbers.find(before);
    return number == numbers.end() ? before : number->second;
  };
  std::multiset<ModelSnapshot::Link> links;
  for (const auto& [scenario, from, to] : model.links) {
    links.emplace(scenario, numberOf(from), numberOf(to));
  }
  model.links = std::move(links);
  std::map<std::pair<std::int32_t, std::int32_t>, ModelSnapshot::Assignment> assignments;
  for (auto& [key, assignment] : model.assignments) {
    assignments[{numberOf(key.first), key.second}] = std::move(assignment);
  }
  model.assignments = std::move(assignments);
  return model;
}

MergeChange FoundByName(const std::vector<std::int32_t>& rows) {
  std::string sentence = rows.size() == 1 ? "A task bears no number of the model in Text1, and was"
                                          : "Tasks bear no number of the model in Text1, and were";
  sentence += " found by name and place: row" + std::string(rows.size() == 1 ? " " : "s ");
  for (std::size_t at = 0; at < rows.size(); ++at) {
    const bool goesOn = at > 0 && rows[at - 1] + 1 == rows[at];
    const bool isLast = at + 1 == rows.size() || rows[at + 1] != rows[at] + 1;
    if (goesOn && !isLast) continue;
    sentence += (at == 0 ? "" : goesOn ? "-" : ", ") + std::to_string(rows[at]);
  }
  return {ChangeKind::kKept,
          {"plan", std::nullopt, ""},
          sentence + ".",
          "Save the plan with that field, so that a task keeps its unit under another name."};
}

}  // namespace

std::vector<MergeChange> ChangesOf(const reconcile::MergeResult& merge, const ModelSnapshot& before,
                                   const ModelSnapshot& after) {
  std::vector<MergeChange> changes;
  for (const reconcile::Remark& remark : merge.remarks) {
    const auto number = remark.kind == "task" ? remark.row : std::nullopt;
    changes.push_back({ChangeKind::kNotTaken,
                       {remark.kind, number, remark.name},
                       remark.sentence,
                       remark.advice,
                       remark.row});
  }
  if (!merge.byName.empty()) changes.push_back(FoundByName(merge.byName));
  for (const auto& [earlier, number] : merge.numbers) {
    const auto unit = after.units.find(number);
    if (unit == after.units.end() || !before.units.contains(earlier)) continue;
    changes.push_back({ChangeKind::kChanged,
                       {"unit", number, unit->second.name},
                       "Its number was " + std::to_string(earlier) +
                           "; a plan has its tasks in the order of the numbers.",
                       "",
                       unit->second.planRow});
  }
  const ModelSnapshot was = WithNumbers(before, merge.numbers);
  for (const auto& more : {ChangesBetween(was, after), TakenOutBetween(was, after)}) {
    changes.insert(changes.end(), more.begin(), more.end());
  }
  return changes;
}

MergePreview PreviewCompleteMerge(const std::string& planPath, const std::string& interimPath,
                                  std::int32_t project, const std::string& templatePath,
                                  Proof proof, Desktop* shown, MergeWitness* witness) {
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
  const reconcile::MergeResult merge = reconcile::MergeCompletely(state, planPath);
  preview.merged = merge.merged;
  if (merge.merged) {
    const ModelSnapshot after = ReadSnapshot(*state.gProjectConn, project);
    if (witness != nullptr) {
      witness->OnNumbers(merge.numbers);
      witness->OnAfter(*state.gProjectConn, WithNumbers(before, merge.numbers), after);
    }
    preview.changes = ChangesOf(merge, before, after);
    if (proof == Proof::kMade) {
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
