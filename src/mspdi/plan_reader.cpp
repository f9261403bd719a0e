#include "mspdi/plan_reader.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <unordered_map>
#include <utility>

#include "custom_fields.h"
#include "outline_rows.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "xml_file.h"
#include "xml_values.h"

namespace merivane::mspdi {

namespace {

constexpr std::string_view kNamespace = "http://schemas.microsoft.com/project";
constexpr std::int64_t kHighestId = 32767;

// The UIDs and IDs that records of one kind have taken, each with its line.
class TakenNumbers {
 public:
  TakenNumbers(const XmlFile& file, const char* kind) : file_(file), kind_(kind) {}

  void TakeUid(std::int64_t uid, std::size_t line) { Take(uids_, "UID", uid, line); }

  void TakeId(std::int64_t id, std::size_t line) {
    if (id < 1 || id > kHighestId) {
      file_.Refuse(line, std::string("the ") + kind_ + " has the ID " + std::to_string(id) +
                             "; IDs run from 1 to 32,767.");
    }
    Take(ids_, "ID", id, line);
  }

 private:
  using Lines = std::unordered_map<std::int64_t, std::size_t>;

  void Take(Lines& lines, const char* number, std::int64_t value, std::size_t line) {
    const auto [earlier, fresh] = lines.emplace(value, line);
    if (fresh) return;
    file_.Refuse(line, std::string("the ") + number + " " + std::to_string(value) + " of this " +
                           kind_ + " is taken by the one in line " +
                           std::to_string(earlier->second) + ".");
  }

  const XmlFile& file_;
  const char* kind_;
  Lines uids_;
  Lines ids_;
};

using IdsByUid = std::unordered_map<std::int64_t, std::int64_t>;

class Reader {
 public:
  Reader(const Output& file, TakenTasks taken) : file_(file), values_(file_), taken_(taken) {}

  FilePlan ReadWhole();
  // With one row in memory. Fails where the file has a fault, isn't plain (XmlFile), or has its
  // parts or rows in another order.
  FilePlan ReadRows();

 private:
  // A link as the file has it, before all tasks are known.
  struct RawLink {
    std::int64_t predecessorUid = 0;
    FileLink link;
    bool elsewhere = false;  // it comes from another project
  };

  using NextRow = std::function<pugi::xml_node()>;  // a null node behind the last of a list

  void CheckRoot() const;
  bool ReadHead(const pugi::xml_node& node);  // false for any other element of the root
  void ReadTasks(const pugi::xml_node& tasks);
  void ReadTaskRows(const NextRow& next);
  void ReadTask(const pugi::xml_node& node, TakenNumbers& taken);
  void NoteUntaken(const pugi::xml_node& node, const FileTask& task);
  void SettleTasks();
  void DropInactive();
  void ReadLink(const pugi::xml_node& node);
  void ReadCustomField(const pugi::xml_node& node, FileTask& task);
  void CheckLevel(const FileTask& task) const;
  void ResolveLinks();
  void ReadResources(const NextRow& next);
  void ReadAssignments(const NextRow& next);
  void ReadAssignment(const pugi::xml_node& node);
  void NoteWork(const FileAssignment& assignment, double minutes);
  FilePlan Plan();

  XmlFile file_;
  XmlValues values_;
  TakenTasks taken_;
  FilePlan plan_;
  double standardRate_ = 0;  // of a resource that has none of its own
  double overtimeRate_ = 0;
  std::int64_t place_ = 0;  // in the list, of the last task
  std::int64_t levelsOfWhole_ = 0;
  std::vector<std::vector<RawLink>> links_;  // of each task
  IdsByUid taskIds_;
  IdsByUid resourceIds_;
  std::unordered_map<std::int64_t, double> minutes_;  // of each task that stays, by ID
};

void Reader::CheckRoot() const {
  const pugi::xml_node root = file_.Root();
  const std::string_view name = root.name();
  const std::size_t colon = name.find(':');
  const std::string declaration =
      colon == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(name.substr(0, colon));
  const std::string_view space = root.attribute(declaration.c_str()).value();
  if (LocalName(root) != "Project" || (!space.empty() && !space.starts_with(kNamespace))) {
    file_.Refuse(root, "found <" + FromUtf8(name) + ">" +
                           (space.empty() ? "" : " of '" + FromUtf8(space) + "'") +
                           " where a plan begins with <Project> of '" + std::string(kNamespace) +
                           "'.");
  }
}

bool Reader::ReadHead(const pugi::xml_node& node) {
  const std::string_view name = LocalName(node);
  if (name == "Name") {
    plan_.name = values_.Text(node);
  } else if (name == "StartDate") {
    plan_.start = XmlDate(TextOf(node));
  } else if (name == "MinutesPerDay") {
    constexpr std::int64_t kMinutesOfDay = 1440;
    plan_.minutesPerDay = static_cast<double>(values_.Integer(node, 1, kMinutesOfDay));
  } else if (name == "DefaultStandardRate") {
    standardRate_ = node.text().as_double(0);
  } else if (name == "DefaultOvertimeRate") {
    overtimeRate_ = node.text().as_double(0);
  } else {
    return false;
  }
  return true;
}

FilePlan Reader::ReadWhole() {
  file_.ReadWhole();
  CheckRoot();
  const auto parts = file_.Root().children();
  const auto rowsOf = [](const pugi::xml_node& list) {
    return [row = list.first_child()]() mutable { return std::exchange(row, row.next_sibling()); };
  };
  for (const pugi::xml_node& node : parts) ReadHead(node);
  for (const pugi::xml_node& node : parts) {
    if (LocalName(node) == "Tasks") ReadTasks(node);
    if (LocalName(node) == "Resources") ReadResources(rowsOf(node));
  }
  SettleTasks();
  for (const pugi::xml_node& node : parts) {
    if (LocalName(node) == "Assignments") ReadAssignments(rowsOf(node));
  }
  return Plan();
}

FilePlan Reader::ReadRows() {
  constexpr std::string_view kLists[] = {"Tasks", "Resources", "Assignments"};
  const auto* const assignments = std::end(kLists) - 1;
  const NextRow next = [this] {
    return file_.NextName().empty() ? pugi::xml_node() : file_.ReadElement();
  };
  file_.EnterRoot();
  CheckRoot();
  const auto* expected = std::begin(kLists);  // the first list that may come
  for (std::string_view name; !(name = file_.NextName()).empty();) {  // until it reads on
    const auto* const list = std::ranges::find(kLists, name);
    if (list == std::end(kLists)) {
      if (ReadHead(file_.ReadElement()) && expected != std::begin(kLists)) file_.RefuseAsNotPlain();
      continue;
    }
    if (list < expected) file_.RefuseAsNotPlain();
    expected = list + 1;
    file_.Enter();
    if (*list == "Tasks") ReadTaskRows(next);
    if (*list == "Resources") ReadResources(next);
    if (list != assignments) continue;
    SettleTasks();
    ReadAssignments(next);
  }
  if (expected <= assignments) SettleTasks();
  file_.ReadEnd();
  return Plan();
}

FilePlan Reader::Plan() {
  plan_.lostCharacters = values_.LostCharacters();
  return std::move(plan_);
}

void Reader::ReadTasks(const pugi::xml_node& tasks) {
  TakenNumbers taken(file_, "task");
  const std::vector<RowHead> rows = RowsInOrder(tasks);
  levelsOfWhole_ = LevelsOfWhole(rows);
  for (const RowHead& row : rows) ReadTask(row.node, taken);
}

void Reader::ReadTaskRows(const NextRow& next) {
  TakenNumbers taken(file_, "task");
  std::vector<RowHead> rows;
  while (const pugi::xml_node node = next()) {
    if (LocalName(node) != "Task") continue;
    rows.push_back(HeadOf(node));
    ReadTask(node, taken);
  }
  if (!StandInOrder(rows) || LevelsOfWhole(rows) != levelsOfWhole_) file_.RefuseAsNotPlain();
}

void Reader::ReadTask(const pugi::xml_node& node, TakenNumbers& taken) {
  FileTask task;
  task.line = file_.LineOf(node);
  std::optional<std::int64_t> uid;
  std::optional<std::int64_t> id;
  std::optional<double> manualDays;
  bool blank = false;
  links_.emplace_back();
  for (const pugi::xml_node& field : node.children()) {
    const std::string_view name = LocalName(field);
    if (name == "UID") {
      uid = values_.Integer(field);
    } else if (name == "ID") {
      id = values_.Integer(field);
    } else if (name == "Name") {
      task.name = values_.Text(field);
    } else if (name == "IsNull") {
      blank = values_.Flag(field);
    } else if (name == "OutlineLevel") {
      task.level = values_.Integer(field, 0, kHighestId);
    } else if (name == "Duration") {
      task.days = values_.Minutes(field) / plan_.minutesPerDay;
    } else if (name == "Start") {
      task.start = XmlMoment(TextOf(field));
    } else if (name == "Finish") {
      task.finish = XmlMoment(TextOf(field));
    } else if (name == "ManualDuration") {
      manualDays = values_.Minutes(field) / plan_.minutesPerDay;
    } else if (name == "Active") {
      task.inactive = !values_.Flag(field);
    } else if (name == "Notes") {
      task.notes = values_.Lines(field);
    } else if (name == "ExtendedAttribute") {
      ReadCustomField(field, task);
    } else if (name == "PredecessorLink") {
      ReadLink(field);
    }
  }
  if (uid) taken.TakeUid(*uid, task.line);
  const bool whole = IsWhole(uid, task.level);
  if (!whole) ++place_;
  task.uid = uid.value_or(0);
  task.id = id.value_or(place_);
  if (!whole && !blank && task.name.empty()) {
    plan_.untaken.Add(Untaken::kNamelessTasks, task.id);
    if (taken_ == TakenTasks::kAll) task.name = "Task " + std::to_string(task.id);
  }
  if (whole || blank || task.name.empty()) {
    links_.pop_back();
    return;
  }
  taken.TakeId(task.id, task.line);
  task.level -= levelsOfWhole_;
  CheckLevel(task);
  for (const RawLink& link : links_.back()) {
    if (uid && !link.elsewhere && link.predecessorUid == *uid) {
      file_.Refuse(task.line, "the task '" + task.name + "' is linked to itself.");
    }
  }
  if (uid) taskIds_.emplace(*uid, task.id);
  if (!task.days) task.days = manualDays;
  NoteUntaken(node, task);
  plan_.tasks.push_back(std::move(task));
}

// Of a task that stays in the plan; what it can't read there is no fault.
void Reader::NoteUntaken(const pugi::xml_node& node, const FileTask& task) {
  if (task.inactive) return;
  const auto note = [&](Untaken kind, bool holds) {
    if (holds) plan_.untaken.Add(kind, task.id);
  };
  const auto number = [](const pugi::xml_node& field) { return field.text().as_int(0); };
  for (const pugi::xml_node& field : node.children()) {
    const std::string_view name = LocalName(field);
    if (name == "Manual") note(Untaken::kManualTasks, field.text().as_bool());
    if (name == "IsSubproject") note(Untaken::kSubprojects, field.text().as_bool());
    if (name == "ConstraintType") note(Untaken::kConstraints, number(field) != 0);
    if (name == "PercentComplete") note(Untaken::kProgress, number(field) > 0);
    if (name == "CalendarUID") note(Untaken::kTaskCalendars, number(field) > 0);
    if (name == "FixedCost") note(Untaken::kFixedCosts, field.text().as_double(0) != 0);
    if (name == "DurationFormat") {
      note(Untaken::kElapsedDurations, schedule::Lag{0, number(field)}.IsElapsed());
    }
  }
}

// Once all of them are known.
void Reader::SettleTasks() {
  DropInactive();
  ResolveLinks();
  for (const FileTask& task : plan_.tasks) {
    minutes_.emplace(task.id, task.days.value_or(0) * plan_.minutesPerDay);
  }
}

// An inactive task goes, unless a task that stays lies below it.
void Reader::DropInactive() {
  std::vector<bool> stays(plan_.tasks.size());
  std::int64_t below = 0;  // the level of the next one that stays
  for (std::size_t task = plan_.tasks.size(); task-- > 0;) {
    const bool isTaken = taken_ == TakenTasks::kAll || !plan_.tasks[task].inactive;
    stays[task] = isTaken || below > plan_.tasks[task].level;
    if (stays[task]) below = plan_.tasks[task].level;
  }
  std::size_t kept = 0;
  for (std::size_t task = 0; task < stays.size(); ++task) {
    if (plan_.tasks[task].inactive && (taken_ == TakenTasks::kAll || !stays[task])) {
      plan_.untaken.Add(Untaken::kInactiveTasks, plan_.tasks[task].id);
    }
    if (!stays[task]) {
      taskIds_.erase(plan_.tasks[task].uid);
      continue;
    }
    if (kept != task) {
      plan_.tasks[kept] = std::move(plan_.tasks[task]);
      links_[kept] = std::move(links_[task]);
    }
    ++kept;
  }
  plan_.tasks.resize(kept);
  links_.resize(kept);
}

void Reader::ReadLink(const pugi::xml_node& node) {
  RawLink raw;
  for (const pugi::xml_node& field : node.children()) {
    const std::string_view name = LocalName(field);
    if (name == "PredecessorUID") {
      raw.predecessorUid = values_.Integer(field);
    } else if (name == "Type") {
      raw.link.kind = static_cast<schedule::LinkKind>(values_.Integer(field, 0, 3));
    } else if (name == "CrossProject") {
      raw.elsewhere = values_.Flag(field);
    } else if (name == "LinkLag") {
      raw.link.lag.amount = values_.Integer(field);
    } else if (name == "LagFormat") {
      raw.link.lag.format = values_.Integer(field);
    }
  }
  links_.back().push_back(raw);
}

void Reader::ReadCustomField(const pugi::xml_node& node, FileTask& task) {
  bool isText1 = false;
  std::string value;
  for (const pugi::xml_node& field : node.children()) {
    const std::string_view name = LocalName(field);
    if (name == "FieldID") isText1 = Trim(TextOf(field)) == std::to_string(kText1Field);
    if (name == "Value") value = TextOf(field);
  }
  if (isText1) task.text1 = FromUtf8(value);
}

void Reader::CheckLevel(const FileTask& task) const {
  const std::int64_t above = plan_.tasks.empty() ? 0 : plan_.tasks.back().level;
  if (task.level <= above + 1) return;
  file_.Refuse(task.line, "the outline jumps from level " + std::to_string(above) + " to level " +
                              std::to_string(task.level) + " at the task '" + task.name + "'.");
}

void Reader::ResolveLinks() {
  for (std::size_t task = 0; task < plan_.tasks.size(); ++task) {
    for (const RawLink& raw : links_[task]) {
      const auto predecessor = taskIds_.find(raw.predecessorUid);
      const std::int64_t id = plan_.tasks[task].id;
      if (raw.elsewhere) plan_.untaken.Add(Untaken::kOuterLinks, id);
      if (raw.elsewhere || predecessor == taskIds_.end()) continue;
      if (raw.link.lag.amount != 0) plan_.untaken.Add(Untaken::kLags, id);
      if (raw.link.kind == schedule::LinkKind::kStartToFinish) {
        plan_.untaken.Add(Untaken::kStartToFinishLinks, id);
      }
      plan_.tasks[task].predecessors.push_back(raw.link);
      plan_.tasks[task].predecessors.back().predecessor = predecessor->second;
    }
  }
}

void Reader::ReadResources(const NextRow& next) {
  TakenNumbers taken(file_, "resource");
  std::int64_t place = 0;
  while (const pugi::xml_node node = next()) {
    if (LocalName(node) != "Resource") continue;
    FileResource resource;
    resource.line = file_.LineOf(node);
    std::optional<std::int64_t> uid;
    std::optional<std::int64_t> id;
    bool costs = false;
    for (const pugi::xml_node& field : node.children()) {
      const std::string_view name = LocalName(field);
      if (name == "UID") {
        uid = values_.Integer(field);
      } else if (name == "ID") {
        id = values_.Integer(field);
      } else if (name == "Name") {
        resource.name = values_.Text(field);
      } else if (name == "MaxUnits") {
        resource.units = values_.Units(field);
      } else if (name == "Notes") {
        resource.notes = values_.Lines(field);
      } else if (name == "Type" && Trim(TextOf(field)) == "0") {
        if (resource.kind == ResourceKind::kWork) resource.kind = ResourceKind::kMaterial;
      } else if (name == "IsCostResource" && values_.Flag(field)) {
        resource.kind = ResourceKind::kCost;
      } else if (name == "MaterialLabel") {
        resource.unit = values_.Text(field);
      } else if (name == "CostPerUse") {
        costs = costs || field.text().as_double(0) != 0;
      } else if (name == "StandardRate") {
        costs = costs || field.text().as_double(0) != standardRate_;
      } else if (name == "OvertimeRate") {
        costs = costs || field.text().as_double(0) != overtimeRate_;
      }
    }
    if (uid) taken.TakeUid(*uid, resource.line);
    if (uid != 0) ++place;
    if (resource.name.empty()) continue;
    resource.uid = uid.value_or(0);
    resource.id = id.value_or(place);
    taken.TakeId(resource.id, resource.line);
    if (uid) resourceIds_.emplace(*uid, resource.id);
    if (resource.kind == ResourceKind::kMaterial) {
      plan_.untaken.Add(Untaken::kMaterialResources, resource.id);
    }
    if (resource.kind == ResourceKind::kCost) {
      plan_.untaken.Add(Untaken::kCostResources, resource.id);
    }
    if (costs) plan_.untaken.Add(Untaken::kResourceCosts, resource.id);
    plan_.resources.push_back(std::move(resource));
  }
}

void Reader::ReadAssignments(const NextRow& next) {
  while (const pugi::xml_node node = next()) {
    if (LocalName(node) == "Assignment") ReadAssignment(node);
  }
}

void Reader::ReadAssignment(const pugi::xml_node& node) {
  FileAssignment assignment;
  std::optional<double> work;
  for (const pugi::xml_node& field : node.children()) {
    const std::string_view name = LocalName(field);
    if (name == "TaskUID") {
      const auto task = taskIds_.find(values_.Integer(field));
      if (task != taskIds_.end()) assignment.task = task->second;
    } else if (name == "ResourceUID") {
      const auto resource = resourceIds_.find(values_.Integer(field));
      if (resource != resourceIds_.end()) assignment.resource = resource->second;
    } else if (name == "Units") {
      assignment.units = values_.Units(field);
    } else if (name == "Work") {
      work = XmlValues::MinutesIn(field);
    }
  }
  if (assignment.task <= 0 || assignment.resource <= 0) return;
  plan_.assignments.push_back(assignment);
  if (work) NoteWork(assignment, *work);
}

// Project rounds work to minutes, and units to hundredths. Of a material it is a quantity.
void Reader::NoteWork(const FileAssignment& assignment, double minutes) {
  const auto& materials = plan_.untaken.Of(Untaken::kMaterialResources);
  if (std::ranges::find(materials, assignment.resource) != materials.end()) return;
  const double duration = minutes_[assignment.task];
  if (duration == 0) return;
  if (std::abs(duration * assignment.units - minutes) > 1 + duration / 100) {
    plan_.untaken.Add(Untaken::kWork, assignment.task);
  }
}

}  // namespace

std::string LostCharactersText(const FilePlan& plan) {
  return Counted(plan.lostCharacters, "character of the plan is", "characters of the plan are") +
         " not in the model's character set (Windows-1252) and became '?'.";
}

FilePlan ReadPlanFile(const Output& file, TakenTasks taken) {
  try {
    return Reader(file, taken).ReadRows();
  } catch (const RunTimeError&) {
    return Reader(file, taken).ReadWhole();  // which tells each fault in its order
  }
}

}  // namespace merivane::mspdi
