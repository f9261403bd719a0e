#include <cstddef>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "model_edit.h"
#include "outline.h"
#include "reconcile/plan_content.h"
#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "store/ask.h"

namespace merivane::reconcile {

namespace {

class Numbering {
 public:
  Numbering(Connection& plan, std::int32_t project, const ModelRows& model,
            const PlanContent& given)
      : plan_(plan), project_(std::to_string(project)), fresh_(model), given_(given) {}

  std::vector<std::int32_t> Run() {
    FindByNumber();
    ListTheOthers();
    Recordset tasks = Tasks();
    for (std::size_t row = 0; !tasks.Eof(); tasks.MoveNext(), ++row) Number(tasks, bearers_[row]);
    if (!given_.tasks.empty() && !IsThisModels()) {
      throw RunTimeError(kInvalidFileFormat,
                         "No task of the plan bears a number of this project's model in the field "
                         "Text1.  Save the plan with that field, or build a new model from the "
                         "plan alone (Overwrite; --overwrite).");
    }
    return std::move(byName_);
  }

 private:
  Recordset Tasks() const {
    return Ask(&plan_, "select * from ProjectAct where Msp_ProjID = ", project_);
  }

  void FindByNumber() {
    Recordset tasks = Tasks();
    for (; !tasks.Eof(); tasks.MoveNext()) {
      const std::int32_t unit = NumberIn(tasks.Field("Text1")).value_or(0);
      const bool isIts = IsTask(tasks) && given_.tasks.contains(unit) && borne_.insert(unit).second;
      bearers_.push_back(isIts ? unit : 0);
    }
    byNumber_ = borne_.size();
  }

  // In the order of the plan that the model gives.
  void ListTheOthers() {
    std::map<std::size_t, std::int32_t> inOrder;
    for (const auto& [unit, task] : given_.tasks) {
      if (!borne_.contains(unit)) inOrder.emplace(task.place, unit);
    }
    for (const auto& [place, unit] : inOrder) {
      const PlanContent::Task& task = given_.tasks.at(unit);
      others_[{task.parent, task.name}].push_back(unit);
    }
  }

  static bool IsTask(Recordset& row) { return NumberIn(row.Field("Outline")).value_or(0) > 0; }

  void Number(Recordset& row, std::int32_t unit) {
    if (!IsTask(row)) return;
    ++count_;
    const std::int32_t level = *NumberIn(row.Field("Outline"));
    while (!above_.empty() && above_.back().first >= level) above_.pop_back();
    if (unit == 0) {
      unit = UnitByName(row);
      row.SetField("Text1", std::to_string(unit));
      row.Update();
    }
    above_.emplace_back(level, unit);
  }

  std::int32_t UnitByName(Recordset& row) {
    const std::int32_t parent = above_.empty() ? 0 : above_.back().second;
    const auto others = others_.find({parent, Joined(row.Field("Name"))});
    if (others == others_.end() || others->second.empty()) return fresh_.NextUnit();
    const std::int32_t unit = others->second.front();
    others->second.pop_front();
    byName_.push_back(NumberIn(row.Field("PID")).value_or(0));
    return unit;
  }

  bool IsThisModels() const { return byNumber_ > 0 || byName_.size() * 2 > count_; }

  Connection& plan_;
  std::string project_;
  ModelEdit fresh_;
  const PlanContent& given_;
  std::set<std::int32_t> borne_;
  std::vector<std::int32_t> bearers_;  // by row: its unit, 0 where it bears none
  std::size_t byNumber_ = 0;
  std::size_t count_ = 0;
  std::map<std::pair<std::int32_t, std::string>, std::deque<std::int32_t>> others_;
  std::vector<std::pair<std::int32_t, std::int32_t>> above_;  // level and number
  std::vector<std::int32_t> byName_;
};

}  // namespace

std::vector<std::int32_t> NumberTasks(Connection& plan, std::int32_t project,
                                      const ModelRows& model, const PlanContent& given) {
  return Numbering(plan, project, model, given).Run();
}

}  // namespace merivane::reconcile
