#include <algorithm>
#include <utility>

#include "reconcile/model_limits.h"
#include "reconcile/plan_content.h"
#include "reconciliation.h"
#include "runtime/text.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::reconcile {

using namespace translator;

namespace {

constexpr int kMostMoves = 2;  // of a unit that finds no place

// Days without zeros behind the point.
std::string Shortest(std::string days) {
  if (days.find('.') == std::string::npos) return days;
  while (days.ends_with('0')) days.pop_back();
  if (days.ends_with('.')) days.pop_back();
  return days.empty() ? "0" : days;
}

}  // namespace

void Reconciliation::Run() {
  MendNames();
  PlaceTasks();
  TakeRelations();
  RefuseCircles();
  RemoveTasks();
  NameTasks();
  TakeNotes();
  TakeResources();
  TakeAssignments();
  TakeDurations();
  Rewire(edit_, relations_);
  const Relations reached = RelationsOf(edit_);
  OrderTasks();
  TellRelations(relations_.finishToStart, reached.finishToStart, "FS");
  TellRelations(relations_.startToStart, reached.startToStart, "SS");
  TellRelations(relations_.finishToFinish, reached.finishToFinish, "FF");
}

void Reconciliation::TellRelations(const Relations::Pairs& wanted, const Relations::Pairs& reached,
                                   const std::string& kind) {
  for (const auto* pairs : {&wanted, &reached}) {
    const auto& others = pairs == &wanted ? reached : wanted;
    for (const auto& pair : *pairs) {
      if (others.contains(pair)) continue;
      auto [from, to] = pair;
      // What starts or finishes together stands at the higher number, as in the next plan.
      if (kind != "FS" && NumberOf(from) > NumberOf(to)) std::swap(from, to);
      const std::string relation = kind + " to '" + wanted_.tasks.at(from).name + "'";
      Tell(to,
           pairs == &wanted
               ? "A model can't hold its relation " + relation + " beside its other ones."
               : "With its other relations the model gives it " + relation + " too.",
           "Draw its relations in the model.");
    }
  }
}

void Reconciliation::Tell(std::int32_t unit, std::string sentence, std::string advice) {
  const auto task = wanted_.tasks.find(unit);
  const bool isThere = task != wanted_.tasks.end();
  remarks_.push_back({isThere ? task->second.row : std::nullopt, "task",
                      isThere ? task->second.name : "", std::move(sentence), std::move(advice)});
}

void Reconciliation::MendNames() {
  for (auto& [unit, task] : wanted_.tasks) {
    std::string name = HoldableName(task.name);
    if (name.empty()) name = "Task " + std::to_string(unit);
    if (name == task.name) continue;
    Tell(unit, "A model can't hold its name; it is called '" + name + "' there.",
         "Give it a name of up to 250 characters, without straight quotes.");
    task.name = std::move(name);
  }
}

void Reconciliation::TakeRelations() {
  for (const auto& relation : wanted_.relations) TakeRelation(relation);
}

void Reconciliation::TakeRelation(const PlanContent::Relation& relation) {
  const auto& [from, to, kind] = relation;
  const std::string name = "'" + wanted_.tasks.at(from).name + "'";
  if (from == to) return;
  if (kind.starts_with("SF")) {
    Tell(to, "A model holds no start-to-finish relation, such as that to " + name + ".",
         "Use one of another kind.");
    return;
  }
  const auto& units = edit_.Model().units;
  if (units.at(from).scenario != units.at(to).scenario && !given_.relations.contains(relation)) {
    Tell(to,
         "Its predecessor " + name +
             " lies under another summary task; a model has no such "
             "link.",
         "Link the summary tasks instead.");
    return;
  }
  if (kind.size() > 2) {
    Tell(to,
         "A model holds no lag, such as that behind its predecessor " + name + " (" + kind + ").",
         "Put a task in between.");
  }
  if (kind.starts_with("SS")) {
    relations_.startToStart.emplace(std::min(from, to), std::max(from, to));
  } else if (kind.starts_with("FF")) {
    relations_.finishToFinish.emplace(std::min(from, to), std::max(from, to));
  } else {
    relations_.finishToStart.emplace(from, to);
  }
}

// Takes away what waits for nothing until nothing is left, or a circle is.
void Reconciliation::RefuseCircles() const {
  std::map<std::int32_t, std::size_t> waits;
  std::map<std::int32_t, std::vector<std::int32_t>> behind;
  for (const auto& [from, to] : relations_.finishToStart) {
    waits[from];
    ++waits[to];
    behind[from].push_back(to);
  }
  std::vector<std::int32_t> ready;
  for (const auto& [unit, count] : waits) {
    if (count == 0) ready.push_back(unit);
  }
  while (!ready.empty()) {
    const std::int32_t unit = ready.back();
    ready.pop_back();
    waits.erase(unit);
    for (const std::int32_t next : behind[unit]) {
      if (--waits.at(next) == 0) ready.push_back(next);
    }
  }
  if (waits.empty()) return;
  std::string names;
  std::set<std::int32_t> seen;
  for (std::int32_t unit = waits.begin()->first; seen.insert(unit).second;) {
    for (const auto& [from, to] : relations_.finishToStart) {  // one in front that waits too
      if (to != unit || !waits.contains(from)) continue;
      unit = from;
      break;
    }
  }
  for (const std::int32_t unit : seen) {
    names += (names.empty() ? "'" : ", '") + wanted_.tasks.at(unit).name + "'";
  }
  throw CircleOfTasks{names};
}

// What the translator would put elsewhere moves below its summary task: first beside what stands
// there, and where that is no place either, into a scenario of that task alone.
void Reconciliation::PlaceTasks() {
  const auto isGone = [this](std::int32_t unit) {
    return given_.tasks.contains(unit) && !wanted_.tasks.contains(unit);
  };
  for (const auto& [unit, task] : given_.tasks) {
    const auto wanted = wanted_.tasks.find(unit);
    if (wanted == wanted_.tasks.end() || wanted->second.parent != task.parent) continue;
    stayingBelow_[task.parent].emplace(wanted->second.place, unit);
  }
  for (const auto& [unit, task] : wanted_.tasks) {  // from above: numbers follow the rows
    if (!given_.tasks.contains(unit)) AddTask(unit, task);
  }
  std::map<std::int32_t, int> moves;
  while (MoveMisplaced(OutlineOf(edit_.Model(), isGone, {}), moves)) {
  }
  // The order of tasks may still put one that lies below a scenario left out beneath another.
  while (MoveMisplaced(OutlineOf(edit_.Model(), isGone, NumbersOfPlan()), moves)) {
  }
  for (const auto& [unit, place] : OutlineOf(edit_.Model(), isGone, NumbersOfPlan())) {
    if (place.parent == wanted_.tasks.at(unit).parent) continue;
    Tell(unit, "It lies deeper than the ten levels that a translation gives.",
         "Move it further up.");
  }
}

bool Reconciliation::MoveMisplaced(const std::map<std::int32_t, OutlinePlace>& outline,
                                   std::map<std::int32_t, int>& moves) {
  bool isMoved = false;
  for (const auto& [unit, place] : outline) {
    const Task& wanted = wanted_.tasks.at(unit);
    if (place.parent == wanted.parent || moves[unit] == kMostMoves) continue;
    MoveTask(unit, ++moves[unit] == 1 ? ScenarioAmong(wanted) : ScenarioBelow(wanted.parent));
    isMoved = true;
  }
  return isMoved;
}

void Reconciliation::AddTask(std::int32_t unit, const Task& task) {
  const std::int32_t known = ProcessNamed(task.name, 0);
  edit_.AddUnit(unit, ScenarioAmong(task), known != 0 ? known : edit_.AddProcess(task.name),
                task.name);
}

void Reconciliation::MoveTask(std::int32_t unit, std::int32_t scenario) {
  const std::int32_t before = edit_.Model().units.at(unit).scenario;
  if (before == scenario) return;
  touchedScenarios_.insert(before);
  edit_.MoveUnit(unit, scenario);
}

// That of the neighbour in front, since below a task there may be several: where the path of a
// decomposed unit is left out of the plan, its scenario follows another task.
std::int32_t Reconciliation::ScenarioAmong(const Task& task) {
  const auto staying = stayingBelow_.find(task.parent);
  if (staying == stayingBelow_.end()) return ScenarioBelow(task.parent);
  auto neighbour = staying->second.lower_bound(task.place);
  if (neighbour != staying->second.begin()) --neighbour;
  return edit_.Model().units.at(neighbour->second).scenario;
}

std::int32_t Reconciliation::ScenarioBelow(std::int32_t parent) {
  std::int32_t any = 0;
  for (const auto& [number, scenario] : edit_.Model().scenarios) {
    if (scenario.parent != parent) continue;
    if (scenario.sent) return number;
    any = number;
  }
  if (any != 0) return any;
  return edit_.AddScenario(parent == 0 ? "Plan" : wanted_.tasks.at(parent).name, parent);
}

void Reconciliation::RemoveTasks() {
  for (const auto& [unit, task] : given_.tasks) {
    if (wanted_.tasks.contains(unit) || !edit_.IsUnit(unit)) continue;
    touchedScenarios_.insert(edit_.Model().units.at(unit).scenario);
    edit_.RemoveUnit(unit);
  }
  RemoveEmptyScenarios();
}

void Reconciliation::RemoveEmptyScenarios() {
  for (const std::int32_t scenario : touchedScenarios_) {
    const auto row = edit_.Model().scenarios.find(scenario);
    if (row == edit_.Model().scenarios.end() || row->second.parent == 0) continue;
    const auto& units = edit_.Model().units;
    const bool isEmpty = std::none_of(units.begin(), units.end(), [&](const auto& unit) {
      return unit.second.scenario == scenario;
    });
    if (isEmpty) edit_.RemoveScenario(scenario);
  }
}

std::int32_t Reconciliation::NumberOf(std::int32_t unit) const {
  const auto number = numbers_.find(unit);
  return number == numbers_.end() ? unit : number->second;
}

std::map<std::int32_t, std::int32_t> Reconciliation::NumbersOfPlan() const {
  std::map<std::int32_t, std::size_t> places;
  for (const auto& [unit, task] : wanted_.tasks) places[unit] = task.place;
  std::set<std::int32_t> known;
  for (const auto& [unit, task] : given_.tasks) known.insert(unit);
  return NumbersInOrder(edit_.Model(), places, known);
}

// Behind all other changes, which go by the numbers that the plan knows.
void Reconciliation::OrderTasks() {
  numbers_ = NumbersOfPlan();
  edit_.NumberUnits(numbers_);
  TellOrder();
}

void Reconciliation::TellOrder() {
  const auto outline = OutlineOf(edit_.Model(), [](std::int32_t) { return false; }, {});
  PlanContent reached;
  for (const auto& [unit, task] : wanted_.tasks) {
    const auto place = outline.find(NumberOf(unit));
    if (place == outline.end()) continue;
    reached.tasks[unit].parent = task.parent;
    reached.tasks[unit].place = place->second.place;
  }
  for (const MovedTask& moved : MovedTasks(wanted_, reached)) {
    const std::string place = moved.behind == 0
                                  ? "in front of the others"
                                  : "behind task '" + wanted_.tasks.at(moved.behind).name + "'";
    Tell(moved.task,
         "It stands " + place + " in the plan; no number of its unit puts it there in a model.",
         "Move its unit, or number those beside it anew.");
  }
}

std::int32_t Reconciliation::ProcessNamed(const std::string& name, std::int32_t notThis) const {
  for (const auto& [number, process] : edit_.Model().processes) {
    if (number != notThis && EqualNoCase(process.name, name)) return number;
  }
  return 0;
}

void Reconciliation::NameTasks() {
  std::map<std::int32_t, std::vector<std::int32_t>> renamed;  // by process
  for (const auto& [unit, task] : wanted_.tasks) {
    const auto& row = edit_.Model().units.at(unit);
    if (row.name != task.name) renamed[row.process].push_back(unit);
  }
  for (const auto& [process, units] : renamed) NameUnits(process, units);
}

// All uses of a process that get the same name keep it; others go to the process of their new name.
void Reconciliation::NameUnits(std::int32_t process, const std::vector<std::int32_t>& renamed) {
  const std::string& first = wanted_.tasks.at(renamed.front()).name;
  const auto& units = edit_.Model().units;
  const bool isWhole = std::all_of(units.begin(), units.end(), [&](const auto& unit) {
    if (unit.second.process != process) return true;
    const auto task = wanted_.tasks.find(unit.first);
    return task != wanted_.tasks.end() && task->second.name == first;
  });
  if (isWhole && ProcessNamed(first, process) == 0) {
    edit_.NameProcess(process, first);
    for (const std::int32_t unit : renamed) edit_.NameUnit(unit, process, first);
    return;
  }
  for (const std::int32_t unit : renamed) {
    const std::string& name = wanted_.tasks.at(unit).name;
    std::int32_t own = ProcessNamed(name, 0);
    if (own == 0) own = edit_.CopyProcess(process, name);
    edit_.NameUnit(unit, own, name);
  }
  edit_.RemoveProcessUnlessUsed(process);
}

bool Reconciliation::IsNoteRefused(std::int32_t unit, const std::string& note) {
  if (note.size() + 2 > kLongestGlossary) {
    Tell(unit, "Its note is longer than a plan's note can be.", "Shorten it.");
    return true;
  }
  if (!note.starts_with("  End  ") && note.find("\n  End  ") == std::string::npos) return false;
  Tell(unit, "Its note has a line that would end it in a text.", "Change that line.");
  return true;
}

// The note is that of the process, which its uses share.
void Reconciliation::TakeNotes() {
  std::map<std::int32_t, std::vector<std::int32_t>> uses;
  for (const auto& [unit, task] : wanted_.tasks) {
    uses[edit_.Model().units.at(unit).process].push_back(unit);
  }
  for (const auto& [process, units] : uses) {
    const auto pool = edit_.Model().processes.find(process);
    if (pool == edit_.Model().processes.end()) continue;  // nothing of a translated plan has none
    const std::string note = pool->second.note;
    const std::string& first = wanted_.tasks.at(units.front()).note;
    const bool isOne = std::all_of(units.begin(), units.end(), [&](std::int32_t unit) {
      return wanted_.tasks.at(unit).note == first;
    });
    if (isOne) {
      if (first != note && !IsNoteRefused(units.front(), first)) edit_.SetNote(process, first);
      continue;
    }
    for (const std::int32_t unit : units) {
      if (wanted_.tasks.at(unit).note == note) continue;
      Tell(unit, "Other tasks of its name have another note; a model holds one for all of them.",
           "Give it a name of its own, or all of them the same note.");
    }
  }
}

void Reconciliation::TakeDurations() {
  for (const auto& [unit, task] : wanted_.tasks) {
    if (task.isSummary) continue;
    const auto given = given_.tasks.find(unit);
    const bool isNew = given == given_.tasks.end();
    const bool hasObjects = edit_.HasObjects(unit);
    const bool isOneDay = IsSameNumber(task.duration, "1");
    if (!isNew && hasObjects && IsSameNumber(task.duration, given->second.duration)) continue;
    if (hasObjects) {
      edit_.SetDuration(unit, Shortest(task.duration));
    } else if (!isOneDay) {
      Tell(unit,
           "It takes " + task.duration +
               " days; a unit without objects has no cycle time and "
               "takes 1.",
           "Assign a resource to it.");
    }
  }
}

}  // namespace merivane::reconcile
