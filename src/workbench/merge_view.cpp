#include "workbench/merge_view.h"

#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "inspect/merge_preview.h"
#include "joined_model.h"
#include "notes.h"
#include "outline.h"
#include "pictures/chart.h"
#include "runtime/run_time_error.h"

namespace merivane::workbench {

namespace {

class Pictures : public MergeWitness {
 public:
  Pictures(std::int32_t project, const DateTime& today) : project_(project), today_(today) {}

  FileView Take() { return std::move(view_); }

 private:
  void OnBefore(Connection& model) override {
    if (isRead_) return;
    isRead_ = true;
    Guarded([&] {
      before_ = ReadProcessModel(model, project_);
      view_.model = before_;
      AddModel(view_);
      AddPlan(view_, model, project_, today_);
      if (view_.chart) plan_ = ReadDatedPlan(model, project_, today_);
    });
  }

  void OnNumbers(const std::map<std::int32_t, std::int32_t>& numbers) override {
    const auto give = [&](auto& number) {
      const auto now = numbers.find(static_cast<std::int32_t>(number));
      if (now != numbers.end()) number = now->second;
    };
    for (Scenario& scenario : before_.scenarios) {
      give(scenario.parent);
      for (Unit& unit : scenario.units) give(unit.number);
      for (Link& link : scenario.links) {
        give(link.origin);
        give(link.destination);
      }
    }
    if (!plan_) return;
    for (schedule::PlanTask& task : plan_->plan.tasks) {
      if (task.occurrence) give(*task.occurrence);
    }
  }

  void OnAfter(Connection& model, const ModelSnapshot& before,
               const ModelSnapshot& after) override {
    Guarded([&] {
      FileView view;
      view.model = Joined(before_, ReadProcessModel(model, project_), before, after);
      AddModel(view);
      AddPlan(view, model, project_, today_, plan_ ? &*plan_ : nullptr);
      view_ = std::move(view);
    });
  }

  // The preview stands without its pictures.
  void Guarded(const std::function<void()>& draw) {
    try {
      draw();
    } catch (const RunTimeError& error) {
      view_.lines.push_back("The pictures can't be made: " + error.Description());
    }
  }

  std::int32_t project_;
  DateTime today_;
  bool isRead_ = false;
  ProcessModel before_;
  std::optional<DatedPlan> plan_;  // as it was
  FileView view_;
};

}  // namespace

FileView ViewMerge(const PlannedMerge& merge, Desktop& shown) {
  Pictures pictures(merge.project, shown.Today());
  const MergePreview preview =
      merge.isComplete
          ? PreviewCompleteMerge(merge.plan, merge.database, merge.project, shown.TemplatePath(),
                                 false, &shown, &pictures)
          : PreviewMerge(merge.plan, merge.database, merge.project, &shown, {}, &pictures);
  FileView view = pictures.Take();
  AddChanges(view, preview.changes);
  view.lines.insert(view.lines.begin(), SummaryOf(preview));
  return view;
}

}  // namespace merivane::workbench
