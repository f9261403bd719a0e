#include "inspect/merge_preview.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "inspect/check.h"
#include "inspect/differences.h"
#include "inspect/finding.h"
#include "merge_stops.h"
#include "plan_predecessors.h"
#include "platform/quiet_desktop.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "scratch_folder.h"
#include "store/recordset.h"

namespace merivane::inspect {

using namespace roundtrip;

namespace {

// Merges again and again in fresh copies: what stopped in one pass is left out of the next, or read
// as if it had been mended, until a pass comes through. That one tells what else would change.
class TrialMerge : public MergeListener {
 public:
  TrialMerge(const std::string& planPath, const std::string& interimPath, std::int32_t project,
             Desktop* shown, const std::string& proofTemplate, MergeWitness* witness)
      : planPath_(planPath),
        interimPath_(interimPath),
        project_(project),
        shown_(shown),
        proofTemplate_(proofTemplate),
        witness_(witness) {}

  MergePreview Run() {
    constexpr int kMostPasses = 6;
    for (int pass = 1; pass <= kMostPasses && !Pass(); ++pass) {
    }
    preview_.merged = preview_.changes.empty();
    if (!preview_.merged) preview_.boxes = std::move(boxesToFirstStop_);
    for (auto* found : {&passedOver_, &changes_}) {
      preview_.changes.insert(preview_.changes.end(), found->begin(), found->end());
    }
    return std::move(preview_);
  }

 private:
  using Step = std::pair<MergeStep, std::int32_t>;  // of a task

  void OnLine(std::size_t number, std::string& line) override {
    const auto mended = mended_.find(number);
    if (mended != mended_.end()) line = mended->second;
    line_ = {.line = number, .text = line};
  }

  bool OnTask(MergeStep step, std::int32_t task) override {
    isRead_ = true;
    return !brokenRead_ && !leftOut_.contains({step, task});
  }

  void OnStop(const MergeStop& stop) override {
    if (stop.step) {
      if (!plan_) plan_.emplace(*state_->gInterimConn, project_);
      AddStop(ExplainStep(stop, boxes_->back(), *plan_));
      leftOut_.emplace(*stop.step, stop.number.value_or(0));
      leftOut_.emplace(MergeStep::kLinks, stop.number.value_or(0));
    } else if (stop.line > 0) {
      AddStop(ExplainRow(stop, boxes_->back()));
      Mend(stop);
    } else if (rowsOfXml_.emplace(stop.kind, stop.number.value_or(0)).second) {
      AddStop(ExplainRow(stop, boxes_->back()));
    }
  }

  // A line that stops the merge once more is passed over.
  void Mend(const MergeStop& stop) {
    if (!mended_.emplace(stop.line, MendedLine(stop.text)).second) {
      losesLines_ = true;
      return;
    }
    brokenRead_ = true;
    isPassClean_ = false;
  }

  void AddStop(MergeChange stop) {
    if (preview_.changes.empty()) boxesToFirstStop_ = *boxes_;
    if (!told_.insert(Described(stop.element) + stop.sentence).second) return;
    preview_.changes.push_back(std::move(stop));
    isPassClean_ = false;
  }

  // True where nothing is to be tried again.
  bool Pass() {
    const ScratchFolder folder;
    QuietDesktop desktop;
    if (shown_ != nullptr) desktop.ShowProgressOn(*shown_);
    Program program(desktop);
    const program::Progress::Run run(program.progress);
    boxes_ = &desktop.boxes;
    const std::string text = folder.Path("model.txt");
    Begin(program, text);
    const ModelSnapshot before = ReadSnapshot(*state_->gInterimConn, project_);
    if (witness_ != nullptr) witness_->OnBefore(*state_->gInterimConn);
    const bool ran = Merge();
    const bool isLast = isPassClean_;
    if (!ran && isLast) AddStop(StopOfWhole());
    if (ran) TellChanges(before);
    if (ran && preview_.changes.empty() && !proofTemplate_.empty()) {
      preview_.proof = ProvePreview(*state_->gProjectConn, project_, text, proofTemplate_, shown_);
    }
    program.files.CloseAll();
    preview_.boxes = std::move(desktop.boxes);
    return isLast;
  }

  void Begin(Program& program, const std::string& text) {
    state_ = &program.projectToModel;
    state_->gInterimConn = std::make_unique<Connection>(state_->workspace);
    program.workspace.HoldCopy(*state_->gInterimConn, interimPath_);
    state_->gInterimProjId = project_;
    state_->gRoundTripMerge = true;
    state_->gOutFile = state_->files.FreeFile();
    state_->files.OpenForOutput(state_->gOutFile, text);
    plan_.reset();
    line_ = {};
    isRead_ = brokenRead_ = losesLines_ = false;
    isPassClean_ = true;
  }

  bool Merge() {
    constexpr std::int16_t kMerge = -1;
    try {
      if (KindOfFile(planPath_) == FileKind::kXml) {
        return TranslateXml(*state_, planPath_, kMerge, this);
      }
      return TranslateMpx(*state_, planPath_, "", kMerge, this);
    } catch (const ProgramEnd&) {
      return false;
    }
  }

  // What no line, row or task is to blame for.
  MergeChange StopOfWhole() const {
    const ElementName plan{"plan", std::nullopt, ""};
    if (!preview_.changes.empty()) {
      return {ChangeKind::kStop, plan, "What lies behind can't be tried before that is mended.",
              "Mend what stands above, and try again."};
    }
    const Message box = boxes_->empty() ? Message{} : boxes_->back();
    if (!isRead_ && box.error == kNoCurrentRecord) {
      return {ChangeKind::kStop, plan, "It holds no task.", "Pick another file."};
    }
    if (!isRead_ && line_.line > 0) return ExplainRow({.line = line_.line}, box);
    return {ChangeKind::kStop, plan, ReasonOf(box), "Mend the plan, and try again."};
  }

  void TellChanges(const ModelSnapshot& before) {
    const PlanPredecessors plan(*state_->gProjectConn, project_);
    ModelSnapshot after = ReadSnapshot(*state_->gProjectConn, project_);
    for (const auto& [step, task] : leftOut_) {
      const auto* row = plan.Find(task);
      if (step == MergeStep::kTask && row != nullptr && row->unit) after.units.erase(*row->unit);
    }
    if (witness_ != nullptr) witness_->OnAfter(*state_->gProjectConn, before, after);
    changes_ = ChangesBetween(before, after);
    if (losesLines_) {
      std::erase_if(changes_, [](const auto& change) { return change.kind == ChangeKind::kKept; });
    }
    passedOver_.clear();
    for (MergeChange& change : plan.PassedOver()) {
      const std::int32_t task = change.planRow.value_or(0);
      if (!leftOut_.contains({MergeStep::kLinks, task})) passedOver_.push_back(std::move(change));
    }
  }

  const std::string& planPath_;
  const std::string& interimPath_;
  std::int32_t project_;
  Desktop* shown_;
  const std::string& proofTemplate_;
  MergeWitness* witness_;

  MergePreview preview_;  // the stops of all passes; the boxes of the last one
  std::vector<Message> boxesToFirstStop_;
  std::set<std::string> told_;
  std::set<Step> leftOut_;
  std::map<std::size_t, std::string> mended_;  // lines of an MPX file
  std::set<std::pair<std::string, std::int32_t>> rowsOfXml_;

  // Of the pass.
  ProjectToModel* state_ = nullptr;
  const std::vector<Message>* boxes_ = nullptr;
  std::optional<PlanPredecessors> plan_;
  MergeStop line_;  // the last one that was read
  bool isRead_ = false;
  bool brokenRead_ = false;  // it says nothing about tasks
  bool losesLines_ = false;
  bool isPassClean_ = true;
  std::vector<MergeChange> changes_;
  std::vector<MergeChange> passedOver_;
};

}  // namespace

MergePreview PreviewMerge(const std::string& planPath, const std::string& interimPath,
                          std::int32_t project, Desktop* shown, const std::string& proofTemplate,
                          MergeWitness* witness) {
  return TrialMerge(planPath, interimPath, project, shown, proofTemplate, witness).Run();
}

std::string SummaryOf(const MergePreview& preview) {
  if (!preview.merged) {
    const auto stops =
        std::count_if(preview.changes.begin(), preview.changes.end(),
                      [](const MergeChange& change) { return change.kind == ChangeKind::kStop; });
    return "The merge would stop at " + Counted(static_cast<std::size_t>(stops), "place") +
           "; what it would change without them stands below. Nothing was changed.";
  }
  std::string summary = "The merge would change nothing.";
  if (!preview.changes.empty()) {
    summary = "The merge would make " + Counted(preview.changes.size(), "change") +
              ". Nothing was changed yet.";
  }
  for (const Message& box : preview.boxes) summary += " Message: " + OneLine(box.text);
  return summary;
}

std::vector<Finding> CheckPlan(const std::string& planPath, const std::string& interimPath,
                               std::int32_t project) {
  const MergePreview preview = PreviewMerge(planPath, interimPath, project);
  std::vector<Finding> findings;
  for (const MergeChange& change : preview.changes) {
    if (change.advice.empty()) continue;  // what the plan means to change
    const bool stops = change.kind == ChangeKind::kStop;
    findings.push_back({stops ? Severity::kError : Severity::kWarning,
                        0,
                        change.element,
                        change.sentence,
                        change.advice,
                        {},
                        change.planRow});
  }
  if (!preview.merged) return findings;
  for (const Message& box : preview.boxes) {
    findings.push_back({Severity::kWarning,
                        0,
                        {"plan", std::nullopt, ""},
                        OneLine(box.text),
                        "Change the plan if it is meant otherwise.",
                        {},
                        {}});
  }
  return findings;
}

std::vector<MergeChange> PassedOver(Connection& connection, std::int32_t project) {
  return PlanPredecessors(connection, project).PassedOver();
}

}  // namespace merivane::inspect
