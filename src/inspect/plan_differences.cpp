
#include <algorithm>
#include <utility>

#include "difference_words.h"
#include "matching.h"
#include "reconcile/plan_content.h"

namespace merivane::inspect {

namespace {

std::vector<MatchItem> TasksOf(const PlanContent& plan) {
  std::vector<MatchItem> items;
  for (const auto& [number, task] : plan.tasks) items.push_back({number, task.name, task.parent});
  return items;
}

std::vector<MatchItem> ResourcesOf(const PlanContent& plan) {
  std::vector<MatchItem> items;
  for (const auto& [name, resource] : plan.resources) {
    items.push_back({resource.row.value_or(0), name, 0});
  }
  return items;
}

// The second plan with the numbers of tasks and the names of resources that the first has for them;
// what it alone has gets numbers of its own.
class PlanDifferences {
 public:
  PlanDifferences(const PlanContent& before, const PlanContent& after)
      : before_(before), after_(after) {}

  std::vector<MergeChange> Run() {
    CompareTasks();
    CompareRelations();
    CompareResources();
    CompareAssignments();
    return std::move(changes_);
  }

 private:
  using Task = PlanContent::Task;

  void Add(ChangeKind kind, ElementName element, std::string sentence,
           std::optional<std::int32_t> row) {
    changes_.push_back({kind, std::move(element), std::move(sentence), {}, row});
  }

  static ElementName NameOf(const Task& task) { return {"task", std::nullopt, task.name}; }
  static ElementName NameOf(const PlanContent& plan, std::int32_t number) {
    return NameOf(plan.tasks.at(number));
  }
  static ElementName ResourceNamed(const std::string& name) {
    return {"resource", std::nullopt, name};
  }
  static std::string PlaceOf(const PlanContent& plan, const Task& task) {
    return task.parent == 0 ? "on the first level"
                            : "below " + Described(NameOf(plan, task.parent));
  }

  void CompareTasks() {
    const auto items = TasksOf(before_);
    const auto others = TasksOf(after_);
    const Matching matching(items, others);
    constexpr std::int32_t kFirstNew = 1'000'000'000;
    for (std::size_t index = 0; index < others.size(); ++index) {
      const auto match = matching.OfAfter()[index];
      numbers_[others[index].number] =
          match ? items[*match].number : kFirstNew + static_cast<std::int32_t>(index);
    }
    for (const auto& [row, number] : InOrder(after_)) {
      const Task& task = after_.tasks.at(number);
      const auto old = before_.tasks.find(numbers_.at(number));
      if (old == before_.tasks.end()) {
        Add(ChangeKind::kAdded, NameOf(task), kIsNew, task.row);
      } else {
        CompareTask(old->second, task);
      }
    }
    for (const std::size_t index : matching.Gone()) {
      const Task& task = before_.tasks.at(items[index].number);
      Add(ChangeKind::kRemoved, NameOf(task), kIsGone, task.row);
    }
  }

  static std::vector<std::pair<std::int32_t, std::int32_t>> InOrder(const PlanContent& plan) {
    std::vector<std::pair<std::int32_t, std::int32_t>> rows;
    for (const auto& [number, task] : plan.tasks) rows.emplace_back(task.row.value_or(0), number);
    std::sort(rows.begin(), rows.end());
    return rows;
  }

  void CompareTask(const Task& old, const Task& task) {
    const auto add = [&](std::string sentence) {
      Add(ChangeKind::kChanged, NameOf(task), std::move(sentence), task.row);
    };
    if (old.name != task.name) add(NameSentence(old.name));
    if ((task.parent == 0 ? 0 : numbers_.at(task.parent)) != old.parent) {
      add("It lies " + PlaceOf(after_, task) + " instead of " + PlaceOf(before_, old) + ".");
    }
    // That of a summary task follows from those below it.
    if (!task.isSummary && !IsSameNumber(old.duration, task.duration)) {
      add(DaysSentence(old.duration, task.duration));
    }
    if (old.note != task.note) add(NoteSentence(task.note));
  }

  static PlanContent::Relation InOneOrder(std::int32_t from, std::int32_t to,
                                          const std::string& kind) {
    const bool isTogether = kind.starts_with("SS") || kind.starts_with("FF");
    if (isTogether && from > to) std::swap(from, to);
    return {from, to, kind};
  }

  void CompareRelations() {
    std::set<PlanContent::Relation> rest = before_.relations;
    const auto add = [this](ChangeKind kind, const PlanContent& plan, const auto& relation) {
      const auto& [from, to, type] = relation;
      Add(kind, {"link", std::nullopt, ""},
          LinkSentence(NameOf(plan, from), NameOf(plan, to)) + " (" + type + ")",
          plan.tasks.at(to).row);
    };
    for (const PlanContent::Relation& relation : after_.relations) {
      const auto& [from, to, kind] = relation;
      if (rest.erase(InOneOrder(numbers_.at(from), numbers_.at(to), kind)) == 0) {
        add(ChangeKind::kAdded, after_, relation);
      }
    }
    for (const auto& relation : rest) add(ChangeKind::kRemoved, before_, relation);
  }

  void CompareResources() {
    const auto items = ResourcesOf(before_);
    const auto others = ResourcesOf(after_);
    const Matching matching(items, others);
    for (std::size_t index = 0; index < others.size(); ++index) {
      const std::string& name = others[index].name;
      const PlanContent::Resource& resource = after_.resources.at(name);
      const auto match = matching.OfAfter()[index];
      if (!match) {
        Add(ChangeKind::kAdded, ResourceNamed(name), kIsNew, resource.row);
        continue;
      }
      const std::string& oldName = items[*match].name;
      names_[name] = oldName;
      const PlanContent::Resource& old = before_.resources.at(oldName);
      const auto add = [&](std::string sentence) {
        Add(ChangeKind::kChanged, ResourceNamed(name), std::move(sentence), resource.row);
      };
      if (oldName != name) add(NameSentence(oldName));
      if (!IsSameNumber(old.quantity, resource.quantity)) {
        add(CountSentence(old.quantity, resource.quantity));
      }
      if (old.note != resource.note) add(NoteSentence(resource.note));
    }
    for (const std::size_t index : matching.Gone()) {
      const std::string& name = items[index].name;
      Add(ChangeKind::kRemoved, ResourceNamed(name), kIsGone, before_.resources.at(name).row);
    }
  }

  void CompareAssignments() {
    auto rest = before_.assignments;
    const auto add = [this](ChangeKind kind, const PlanContent& plan, const auto& key,
                            const std::string& what) {
      const Task& task = plan.tasks.at(key.first);
      Add(kind, {"assignment", std::nullopt, ""},
          "Of " + Described(ResourceNamed(key.second)) + " for " + Described(NameOf(task)) + what,
          task.row);
    };
    for (const auto& [key, units] : after_.assignments) {
      const auto name = names_.find(key.second);
      const auto old =
          name == names_.end() ? rest.end() : rest.find({numbers_.at(key.first), name->second});
      if (old == rest.end()) {
        add(ChangeKind::kAdded, after_, key, ": " + units + ".");
        continue;
      }
      if (!IsSameNumber(old->second, units)) {
        add(ChangeKind::kChanged, after_, key, ": " + units + " instead of " + old->second + ".");
      }
      rest.erase(old);
    }
    for (const auto& [key, units] : rest) add(ChangeKind::kRemoved, before_, key, ".");
  }

  const PlanContent& before_;
  const PlanContent& after_;
  std::map<std::int32_t, std::int32_t> numbers_;  // of tasks, of the second plan to the first
  std::map<std::string, std::string> names_;      // of resources likewise
  std::vector<MergeChange> changes_;
};

}  // namespace

std::vector<MergeChange> DifferencesBetween(const PlanContent& before, const PlanContent& after) {
  return PlanDifferences(before, after).Run();
}

}  // namespace merivane::inspect
