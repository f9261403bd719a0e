#include <functional>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "inspect/merge_preview.h"
#include "notes.h"
#include "outline.h"
#include "pictures/chart.h"
#include "runtime/run_time_error.h"
#include "workbench/file_view.h"

namespace merivane::workbench {

namespace {

using Ends = std::pair<std::int32_t, std::int32_t>;

std::set<Ends> EndsOf(const ModelScenario& scenario) {
  std::set<Ends> ends;
  for (const ModelLink& link : scenario.links) ends.emplace(link.origin, link.destination);
  return ends;
}

class Joining {
 public:
  Joining(const ProcessModel& before, ProcessModel after, const ModelSnapshot& snapshotBefore,
          const ModelSnapshot& snapshotAfter)
      : before_(before),
        model_(std::move(after)),
        snapshotBefore_(snapshotBefore),
        snapshotAfter_(snapshotAfter) {}

  ProcessModel Run() {
    NoteNumbers();
    for (ModelScenario& scenario : model_.scenarios) AddNew(scenario);
    for (const ModelScenario& old : before_.scenarios) {
      ModelScenario* scenario = Find(old.number);
      if (scenario == nullptr) {
        model_.scenarios.push_back(old);
      } else {
        AddGone(old, *scenario);
      }
    }
    return std::move(model_);
  }

 private:
  void NoteNumbers() {
    for (ModelScenario& scenario : model_.scenarios) {
      for (ModelUnit& unit : scenario.units) {
        units_.insert(unit.number);
        Rename(unit);
      }
      for (const ModelJunction& junction : scenario.junctions) junctions_.insert(junction.number);
    }
  }

  ModelScenario* Find(std::int32_t number) {
    for (ModelScenario& scenario : model_.scenarios) {
      if (scenario.number == number) return &scenario;
    }
    return nullptr;
  }

  void Rename(ModelUnit& unit) const {
    const auto now = snapshotAfter_.units.find(unit.number);
    if (now == snapshotAfter_.units.end()) return;
    unit.duration = now->second.duration;
    const auto old = snapshotBefore_.units.find(unit.number);
    unit.name = old == snapshotBefore_.units.end()
                    ? now->second.name
                    : NameAndBefore(now->second.name, old->second.name);
  }

  void AddNew(ModelScenario& scenario) {
    for (const auto& [number, made] : snapshotAfter_.units) {
      if (made.scenario != scenario.number || snapshotBefore_.units.contains(number)) continue;
      if (!units_.insert(number).second) continue;
      ModelUnit unit;
      unit.number = number;
      unit.name = made.name;
      unit.duration = made.duration;
      scenario.units.push_back(std::move(unit));
    }
  }

  void AddGone(const ModelScenario& old, ModelScenario& scenario) const {
    const std::set<Ends> were = EndsOf(old);
    const std::set<Ends> are = EndsOf(scenario);
    for (ModelLink& link : scenario.links) {
      if (!were.contains({link.origin, link.destination})) link.mark = Mark::kAdded;
    }
    for (const ModelLink& link : old.links) {
      if (are.contains({link.origin, link.destination})) continue;
      scenario.links.push_back(link);
      scenario.links.back().mark = Mark::kRemoved;
    }
    for (const ModelUnit& unit : old.units) {
      if (!units_.contains(unit.number)) scenario.units.push_back(unit);
    }
    for (const ModelJunction& junction : old.junctions) {
      if (!junctions_.contains(junction.number)) scenario.junctions.push_back(junction);
    }
  }

  const ProcessModel& before_;
  ProcessModel model_;
  const ModelSnapshot& snapshotBefore_;
  const ModelSnapshot& snapshotAfter_;
  std::set<std::int32_t> units_;  // of the model behind the merge
  std::set<std::int32_t> junctions_;
};

// A model before and behind a merge, in one: the model behind it, with what is gone, and with new
// units that the merge has only as tasks of the plan. Units bear their earlier name behind the new
// one, and links their mark.
ProcessModel Joined(const ProcessModel& before, ProcessModel after,
                    const ModelSnapshot& snapshotBefore, const ModelSnapshot& snapshotAfter) {
  return Joining(before, std::move(after), snapshotBefore, snapshotAfter).Run();
}

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
    for (ModelScenario& scenario : before_.scenarios) {
      give(scenario.parent);
      for (ModelUnit& unit : scenario.units) give(unit.number);
      for (ModelLink& link : scenario.links) {
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
                                 Proof::kNone, &shown, &pictures)
          : PreviewMerge(merge.plan, merge.database, merge.project, &shown, {}, &pictures);
  FileView view = pictures.Take();
  AddChanges(view, preview.changes);
  view.lines.insert(view.lines.begin(), SummaryOf(preview));
  return view;
}

}  // namespace merivane::workbench
