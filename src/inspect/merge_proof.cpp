#include <utility>

#include "inspect/merge_preview.h"
#include "memory_model.h"
#include "reconcile/model_limits.h"
#include "reconcile/plan_content.h"
#include "runtime/text.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::inspect {

using namespace reconcile;

namespace {

// What no merge brings into a model, as the advice about it. Null: a model can hold it.
using Limit = const char*;

class PlanComparison {
 public:
  PlanComparison(const PlanContent& wanted, const PlanContent& given)
      : wanted_(wanted), given_(given) {
    for (const auto& [number, task] : wanted.tasks) {
      const auto [first, isFirst] = notes_.try_emplace(task.name, task.note);
      if (!isFirst && first->second != task.note) first->second.reset();
    }
    for (const auto& [number, task] : given.tasks) {
      const auto [first, isFirst] = scenarioBelow_.try_emplace(task.parent, task.scenario);
      if (!isFirst && first->second != task.scenario) first->second = kSeveral;
    }
  }

  std::vector<MergeChange> Run() {
    CompareTasks();
    CompareOrder();
    CompareRelations();
    CompareResources();
    CompareAssignments();
    return std::move(differences_);
  }

 private:
  void Add(std::optional<std::int32_t> row, ElementName element, std::string sentence,
           std::string advice, Limit limit = nullptr) {
    if (limit != nullptr) advice = limit;
    differences_.push_back({ChangeKind::kDiffers, std::move(element), std::move(sentence),
                            std::move(advice), row, limit == nullptr});
  }

  Limit LimitOfPlace(std::int32_t number) const {
    std::size_t level = 0;
    for (auto task = wanted_.tasks.find(number); task != wanted_.tasks.end(); ++level) {
      task = wanted_.tasks.find(task->second.parent);
    }
    return level > kMostLevels ? "A translation gives ten levels: move it further up in the plan."
                               : nullptr;
  }

  // An object of the unit carries its cycle time.
  Limit LimitOfDuration(std::int32_t number, const PlanContent::Task& given) const {
    for (auto assigned = wanted_.assignments.lower_bound({number, ""});
         assigned != wanted_.assignments.end() && assigned->first.first == number; ++assigned) {
      if (LimitOfAlias(assigned->first.second) == nullptr) return LimitOfPlace(number);
    }
    return IsSameNumber(given.duration, "1")
               ? "A unit without objects takes 1 day: assign a resource to it."
               : "Set the cycle time of its objects in the model.";
  }

  Limit LimitOfAlias(const std::string& resource) const {
    return wanted_.resources.at(resource).lacksAlias
               ? "It is assigned to nothing without an alias: give it one in the model."
               : nullptr;
  }

  static Limit LimitOfName(const PlanContent::Task& task) {
    return HoldableName(task.name) == task.name ? nullptr
                                                : "A model holds names of up to 250 characters of "
                                                  "one line, without straight quotes: "
                                                  "rename it in the plan.";
  }

  Limit LimitOfOrder(std::int32_t number) const {
    const auto below = scenarioBelow_.find(given_.tasks.at(number).parent);
    return below->second == kSeveral ? "Its unit is no neighbour of theirs: move it in the model."
                                     : LimitOfPlace(number);
  }

  Limit LimitOfNote(const PlanContent::Task& task) const {
    if (!notes_.at(task.name)) {
      return "A model holds one note for all tasks of its name: give it a name of its own, or all "
             "of them the same note.";
    }
    if (task.note.size() + 2 > kLongestGlossary) return "It is too long for a plan: shorten it.";
    return LimitOfLines(task.note);
  }
  static Limit LimitOfLines(const std::string& note) {
    return HoldsLines(note) ? nullptr : "A line of it would end it in a text: change that line.";
  }

  static bool AreApart(const PlanContent& plan, std::int32_t PlanContent::Task::*place,
                       std::int32_t a, std::int32_t b) {
    const auto first = plan.tasks.find(a);
    const auto second = plan.tasks.find(b);
    return first != plan.tasks.end() && second != plan.tasks.end() &&
           first->second.*place != second->second.*place;
  }
  Limit LimitOfRelation(const PlanContent::Relation& relation) const {
    const auto& [from, to, kind] = relation;
    if (kind.starts_with("SF")) {
      return "A model holds no start-to-finish relations: use one of another kind.";
    }
    if (AreApart(wanted_, &PlanContent::Task::parent, from, to) ||
        AreApart(given_, &PlanContent::Task::scenario, from, to)) {
      return "A link stays within its scenario: link the summary tasks instead.";
    }
    return kind.size() > 2 ? kNoLags : LimitOfPlace(to);
  }
  // Where the plan has the same one with a lag.
  Limit LimitOfRelationGiven(const PlanContent::Relation& relation) const {
    const auto wanted = wanted_.relations.upper_bound(relation);
    if (wanted == wanted_.relations.end()) return nullptr;
    const auto& [from, to, kind] = relation;
    const auto& [wantedFrom, wantedTo, lagged] = *wanted;
    return from == wantedFrom && to == wantedTo && lagged.starts_with(kind) ? kNoLags : nullptr;
  }

  Limit LimitOfAssignment(std::int32_t number, const std::string& resource,
                          const std::string& units) const {
    const auto task = wanted_.tasks.find(number);
    if (task != wanted_.tasks.end() && task->second.isSummary) {
      return "A model gives resources to the tasks below only: assign it there.";
    }
    if (const Limit alias = LimitOfAlias(resource)) return alias;
    if (!HoldsUnits(units)) return "A model holds whole units up to 9: change them in the plan.";
    return LimitOfPlace(number);
  }

  const PlanContent::Task* TaskOf(std::int32_t number) const {
    for (const PlanContent* plan : {&wanted_, &given_}) {
      const auto task = plan->tasks.find(number);
      if (task != plan->tasks.end()) return &task->second;
    }
    return nullptr;
  }
  ElementName Named(std::int32_t number) const {
    const PlanContent::Task* task = TaskOf(number);
    return {"task", std::nullopt, task == nullptr ? "" : task->name};
  }
  std::optional<std::int32_t> RowOf(std::int32_t number) const {
    const PlanContent::Task* task = TaskOf(number);
    return task == nullptr ? std::nullopt : task->row;
  }
  std::string Place(std::int32_t parent) const {
    return parent == 0 ? "on the first level" : "below " + Described(Named(parent));
  }

  void CompareTasks() {
    for (const auto& [number, task] : wanted_.tasks) {
      const auto given = given_.tasks.find(number);
      if (given == given_.tasks.end()) {
        Add(task.row, Named(number), "The merged model gives no task for it.",
            "Draw its unit in the model.", LimitOfPlace(number));
        continue;
      }
      CompareTask(number, task, given->second);
    }
    for (const auto& [number, task] : given_.tasks) {
      if (wanted_.tasks.contains(number)) continue;
      Add(std::nullopt, Named(number), "The plan doesn't have it; the merged model gives it again.",
          "Delete its unit in the model.");
    }
  }

  void CompareTask(std::int32_t number, const PlanContent::Task& task,
                   const PlanContent::Task& given) {
    if (given.name != task.name) {
      Add(task.row, Named(number), "The merged model calls it '" + given.name + "'.",
          "Rename its process in the model.", LimitOfName(task));
    }
    if (given.parent != task.parent) {
      Add(task.row, Named(number),
          "It lies " + Place(task.parent) + " in the plan, and " + Place(given.parent) +
              " in what the merged model gives.",
          "Move its unit in the model.", LimitOfPlace(number));
    }
    // That of a summary task follows from those below it.
    if (!task.isSummary && !IsSameNumber(given.duration, task.duration)) {
      Add(task.row, Named(number),
          "It takes " + task.duration + " days in the plan, and " +
              (given.duration.empty() ? "1" : given.duration) + " by the merged model.",
          "Set the cycle time of its objects in the model.", LimitOfDuration(number, given));
    }
    if (given.note != task.note) {
      Add(task.row, Named(number), "The merged model has another note.",
          "Write it into the glossary of its process.", LimitOfNote(task));
    }
  }

  // Of what lies below one summary task in both.
  void CompareOrder() {
    const auto place = [this](std::int32_t behind) {
      return behind == 0 ? "in front of the others" : "behind " + Described(Named(behind));
    };
    for (const MovedTask& moved : MovedTasks(wanted_, given_)) {
      Add(RowOf(moved.task), Named(moved.task),
          "It stands " + place(moved.behind) + " in the plan, and " + place(moved.otherBehind) +
              " in what the merged model gives.",
          "Number its unit by its place: a plan follows the numbers.", LimitOfOrder(moved.task));
    }
  }

  void CompareRelations() {
    for (const PlanContent::Relation& relation : wanted_.relations) {
      const auto& [from, to, kind] = relation;
      if (given_.relations.contains(relation)) continue;
      Add(RowOf(to), Named(to),
          "The merged model doesn't give its predecessor " + Described(Named(from)) + " (" + kind +
              ").",
          "Draw the link in the model.", LimitOfRelation(relation));
    }
    for (const PlanContent::Relation& relation : given_.relations) {
      const auto& [from, to, kind] = relation;
      if (wanted_.relations.contains(relation)) continue;
      Add(RowOf(to), Named(to),
          "The merged model gives it the predecessor " + Described(Named(from)) + " (" + kind +
              "), which the plan doesn't have.",
          "Delete the link in the model.", LimitOfRelationGiven(relation));
    }
  }

  void CompareResources() {
    for (const auto& [name, resource] : wanted_.resources) {
      const ElementName element{"resource", std::nullopt, name};
      const auto given = given_.resources.find(name);
      if (given == given_.resources.end()) {
        Add(resource.row, element, "The merged model doesn't give it.",
            "Put it into the model's objects.");
        continue;
      }
      if (!IsSameNumber(given->second.quantity, resource.quantity)) {
        Add(resource.row, element,
            "There are " + resource.quantity + " of it in the plan, and " + given->second.quantity +
                " by the merged model.",
            "Set its quantity in the model.");
      }
      if (given->second.note != resource.note) {
        Add(resource.row, element, "The merged model has another note.",
            "Write it into its glossary.", LimitOfLines(resource.note));
      }
    }
    for (const auto& [name, resource] : given_.resources) {
      if (wanted_.resources.contains(name)) continue;
      Add(std::nullopt, {"resource", std::nullopt, name},
          "The plan doesn't have it; the merged model gives it again.",
          "Delete the object in the model.");
    }
  }

  void CompareAssignments() {
    const auto add = [this](const auto& key, const std::string& sentence, Limit limit = nullptr) {
      Add(RowOf(key.first), Named(key.first), "Of resource '" + key.second + "': " + sentence,
          "Set the labor rule of its unit.", limit);
    };
    for (const auto& [key, units] : wanted_.assignments) {
      const auto given = given_.assignments.find(key);
      if (given == given_.assignments.end()) {
        add(key, units + " in the plan, and none by the merged model.",
            LimitOfAssignment(key.first, key.second, units));
      } else if (!IsSameNumber(given->second, units)) {
        add(key, units + " in the plan, and " + given->second + " by the merged model.",
            LimitOfAssignment(key.first, key.second, units));
      }
    }
    for (const auto& [key, units] : given_.assignments) {
      if (!wanted_.assignments.contains(key)) {
        add(key, "none in the plan, and " + units + " by the merged model.");
      }
    }
  }

  static constexpr std::int32_t kSeveral = -1;
  static constexpr Limit kNoLags = "A model holds no lags.";

  const PlanContent& wanted_;
  const PlanContent& given_;
  // That of all tasks of a name, which have one process; nothing where they have several.
  std::map<std::string, std::optional<std::string>> notes_;
  // By the summary task, whose tasks come from several where a path above them stays out.
  std::map<std::int32_t, std::int32_t> scenarioBelow_;
  std::vector<MergeChange> differences_;
};

}  // namespace

MergeProof ProveMerge(Connection& merged, std::int32_t project, const std::string& textPath,
                      const std::string& templatePath, Desktop* shown) {
  MemoryModel model(templatePath, shown);
  model.ChooseAsBefore(merged, project);
  MergeProof proof;
  const auto fail = [&](const char* what) {
    proof.failure = std::string("The merged text can't be ") + what + ": " + model.Failure();
    return proof;
  };
  if (!model.Read(textPath)) return fail("read back");
  if (!model.Translate()) return fail("translated");
  const PlanContent wanted = PlanThatCameIn(merged, project);
  proof.differences =
      PlanComparison(wanted, TranslatedPlan(model.Database(), MemoryModel::kProject)).Run();
  return proof;
}

MergeProof ProvePreview(Connection& merged, std::int32_t project, const std::string& textPath,
                        const std::string& templatePath, Desktop* shown) try {
  return ProveMerge(merged, project, textPath, templatePath, shown);
} catch (const RunTimeError& error) {
  return {{}, error.Description()};
}

std::string SummaryOf(const MergeProof& proof) {
  if (!proof.failure.empty()) return proof.failure;
  const std::size_t count = proof.differences.size();
  if (count == 0) return "The merged model gives the plan that came in.";
  return Counted(count, "difference") +
         " between the plan that came in and what the merged model gives";
}

}  // namespace merivane::inspect
