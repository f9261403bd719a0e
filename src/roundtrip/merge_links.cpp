#include <algorithm>
#include <vector>

#include "merge_statements.h"
#include "merge_steps.h"
#include "plan_outline.h"
#include "runtime/conversions.h"
#include "runtime/run_time_error.h"

namespace merivane::roundtrip {

namespace {

// The passes over the groups of siblings below level 1. The levels and marks of the rows are kept
// beside the table, so that a pass costs its own group and not the whole plan.
class DecompositionPasses {
 public:
  DecompositionPasses(ProjectToModel& state, MergeListener* listener)
      : state_(state), listener_(listener) {
    tasks_.OpenDynamic("Select * from ProjectAct" + WhereMspProjId(state),
                       state.gInterimConn.get());
    outline_.Read(tasks_);
  }

  void InitProcessedFlags();
  bool SelectNextDecomposition();
  void MergeSelectedLinks();
  void StoreMarks();

 private:
  void Require(const char* mark);
  bool EnterScenarioOf(const Value& parent);

  ProjectToModel& state_;
  MergeListener* listener_;
  PlanOutline outline_;
  std::vector<bool> processed_;
  std::vector<std::size_t> selected_;
  std::vector<bool> wasSelected_;
  std::size_t firstOpen_ = 0;  // no row in front of it is unprocessed
  Recordset tasks_;
};

// A table without the mark is refused where it would be set.
void DecompositionPasses::Require(const char* mark) {
  if (tasks_.FindField(mark) < 0) throw RunTimeError(kItemNotFound);
}

void DecompositionPasses::InitProcessedFlags() {
  for (std::size_t row = 0; row < outline_.Size(); ++row) {
    if (row == 0) Require("Processed");
    const auto level = outline_.Level(row);
    processed_.push_back(level && *level <= 1);
    wasSelected_.push_back(false);
  }
}

// As the passes have left them: of the rows that were selected, only the last group is.
void DecompositionPasses::StoreMarks() {
  for (std::size_t row = 0; row < processed_.size(); ++row) {
    tasks_.MoveTo(outline_.Bookmark(row));
    tasks_.SetField("Processed", processed_[row] ? 1 : 0);
    if (wasSelected_[row]) {
      tasks_.SetField("SelectedForProcessing",
                      std::binary_search(selected_.begin(), selected_.end(), row) ? 1 : 0);
    }
    tasks_.Update();
  }
}

bool DecompositionPasses::EnterScenarioOf(const Value& parent) {
  Recordset scenario = Ask(state_.gInterimConn.get(),
                           "Select * from Scenario where Parent_Num = ", OccurrenceText(parent),
                           AndMspProjId(state_));
  if (scenario.Eof()) return false;
  state_.gCurrentScenario = ToInt16(scenario.Field("Num"));
  return true;
}

// Selects the first unprocessed row and its siblings; deeper rows wait for a pass of their own.
bool DecompositionPasses::SelectNextDecomposition() {
  selected_.clear();
  while (firstOpen_ < outline_.Size() && processed_[firstOpen_]) ++firstOpen_;
  if (firstOpen_ == outline_.Size()) return false;
  if (firstOpen_ == 0) throw RunTimeError(kNoCurrentRecord);
  if (!EnterScenarioOf(outline_.Text1(firstOpen_ - 1))) return false;
  const auto level = outline_.Level(firstOpen_);
  for (std::size_t row = firstOpen_; level && row < outline_.Size(); ++row) {
    if (!(outline_.Level(row) >= level)) break;
    if (outline_.Level(row) != level) continue;
    Require("SelectedForProcessing");
    selected_.push_back(row);
    wasSelected_[row] = true;
  }
  return !selected_.empty();
}

void DecompositionPasses::MergeSelectedLinks() {
  for (const std::size_t row : selected_) {
    tasks_.MoveTo(outline_.Bookmark(row));
    MergeLinksOfTask(state_, tasks_, listener_);
    processed_[row] = true;
  }
}

// Without a top scenario the program ends.
void MergeTopLevelLinks(ProjectToModel& state, MergeListener* listener) {
  Recordset topScenarios = Ask(
      state.gInterimConn.get(),
      "Select * from Scenario Where Parent_Num = 0 and Send_To_Project = 1", AndMspProjId(state));
  if (topScenarios.Eof()) {
    state.gNoTopScenario = 1;
  } else {
    state.gCurrentScenario = ToInt16(topScenarios.Field("Num"));
  }
  if (state.gNoTopScenario == 1) EndOnBrokenModel(state, "Project to Celvar Translator.");
  Recordset tasks = Ask(state.gInterimConn.get(), "Select * from ProjectAct where Outline = 1",
                        AndMspProjId(state));
  for (; !tasks.Eof(); tasks.MoveNext()) MergeLinksOfTask(state, tasks, listener);
}

// Group by group of siblings. The row in front of a group counts as its parent; one that has no
// scenario ends the work for good.
void MergeDecompositionLinks(ProjectToModel& state, MergeListener* listener) {
  DecompositionPasses passes(state, listener);
  const auto merge = [&] {
    passes.InitProcessedFlags();
    while (passes.SelectNextDecomposition()) passes.MergeSelectedLinks();
  };
  WithEnd(state, merge, [&] { passes.StoreMarks(); });
}

}  // namespace

void MergeLinks(ProjectToModel& state, MergeListener* listener) {
  state.progress.Begin("Merging the links of the tasks", 0);
  MergeTopLevelLinks(state, listener);
  MergeDecompositionLinks(state, listener);
}

}  // namespace merivane::roundtrip
