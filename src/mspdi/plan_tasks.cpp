#include <algorithm>
#include <optional>
#include <span>

#include "plan_parts.h"
#include "stored_fields.h"

namespace merivane::mspdi {

namespace {

using schedule::Plan;
using schedule::PlanLink;
using schedule::PlanTask;
using schedule::ProjectRows;
using schedule::TaskDates;

constexpr std::int64_t kFixedDuration = 1;
constexpr std::int64_t kMiddlePriority = 500;

// Text fields that Project itself fills.
constexpr std::int64_t kOuterPredecessor = 239075346;  // of a link
constexpr std::int64_t kSubprojectFile = 188743706;
constexpr std::int64_t kContact = 188743792;
constexpr std::int64_t kHyperlink = 188743897;  // behind it address and address within

// The links into each task, in the plan's order.
class LinksBySuccessor {
 public:
  explicit LinksBySuccessor(const Plan& plan)
      : first_(plan.tasks.size() + 1), links_(plan.links.size()) {
    for (const PlanLink& link : plan.links) ++first_[link.successor + 1];
    for (std::size_t task = 0; task < plan.tasks.size(); ++task) first_[task + 1] += first_[task];
    std::vector<std::size_t> next(first_.begin(), first_.end() - 1);
    for (const PlanLink& link : plan.links) links_[next[link.successor]++] = &link;
  }

  std::span<const PlanLink* const> Into(std::size_t task) const {
    return std::span(links_).subspan(first_[task], first_[task + 1] - first_[task]);
  }

 private:
  std::vector<std::size_t> first_;
  std::vector<const PlanLink*> links_;
};

// "1", "1.1", ...: the places of a task and of those above it among their siblings.
class OutlineNumbers {
 public:
  // REQUIRES: the tasks of the plan one by one, in order.
  const std::string& Next(const PlanTask& task) {
    const int place = task.parent ? ++children_[*task.parent] : ++top_;
    numbers_.push_back((task.parent ? numbers_[*task.parent] + "." : std::string()) +
                       std::to_string(place));
    children_.push_back(0);
    return numbers_.back();
  }

 private:
  int top_ = 0;
  std::vector<int> children_;
  std::vector<std::string> numbers_;
};

constexpr bool IsFormat(std::int64_t format) {
  return (format >= 3 && format <= 12) || (format >= 19 && format <= 21) ||
         (format >= 35 && format <= 44) || (format >= 51 && format <= 53);
}

std::int64_t FormatOr(std::int64_t format, std::int64_t otherwise) {
  return IsFormat(format) ? format : otherwise;
}

using WorkOfTasks = std::unordered_map<std::int64_t, schedule::Tenths>;  // by UID

// What the assignments of each task come to.
WorkOfTasks ReadWork(const PlanOnPaper& paper) {
  constexpr double kThousandthsOfTenth = 100;
  WorkOfTasks work;
  enum Column { kTask, kWork, kResource };
  ProjectRows rows(paper.connection, {.name = "MSP_ASSIGNMENTS"}, paper.project,
                   {"TASK_UID", "ASSN_WORK", "RES_UID"});
  for (; !rows.AtEnd(); rows.Next()) {
    const Value thousandths = rows.At(kWork);
    if (!IsNumeric(thousandths) || paper.materials.contains(rows.IntegerAt(kResource, 0))) continue;
    work[rows.IntegerAt(kTask, 0)] +=
        static_cast<schedule::Tenths>(std::max(0.0, ToDouble(thousandths) / kThousandthsOfTenth));
  }
  return work;
}

WorkOfTasks BroughtWork(const PlanOnPaper& paper) {
  WorkOfTasks durations;
  for (const PlanTask& task : paper.plan.tasks) durations.emplace(task.uid, task.duration);
  WorkOfTasks work;
  enum Column { kTask, kUnits, kResource };
  ProjectRows rows(paper.connection, {.name = "ProjectResReqts", .projectColumn = "Msp_ProjID"},
                   paper.project, {"ActivityPID", "Qty", "ResourcePID"});
  for (; !rows.AtEnd(); rows.Next()) {
    if (paper.materials.contains(rows.IntegerAt(kResource, 0))) continue;
    const std::int64_t task = rows.IntegerAt(kTask, 0);
    const Value units = rows.At(kUnits);
    work[task] += static_cast<schedule::Tenths>(static_cast<double>(durations[task]) *
                                                (IsNumeric(units) ? ToDouble(units) : 1));
  }
  return work;
}

class TaskWriter {
 public:
  TaskWriter(const PlanOnPaper& paper, Losses& losses)
      : paper_(paper),
        links_(paper.plan),
        baselines_(paper.connection, paper.project, Owner::kTask),
        outerLinks_(paper.connection, paper.project, "MSP_LINKS",
                    {"LINK_SUCC_UID", "LINK_UID", "LINK_PRED_UID", "LINK_TYPE", "LINK_LAG",
                     "LINK_LAG_FMT", "LINK_IS_CROSS_PROJ"},
                    kCross),
        work_(paper.plan.broughtBack ? BroughtWork(paper) : ReadWork(paper)),
        notes_(ReadTaskNotes(paper.connection, paper.project, paper.plan, losses.notes)) {
    OpenRows();
  }

  void WriteAll(Element& tasks);

 private:
  static const Field<TaskWriter> kFields[];
  static const Field<TaskWriter> kBaselineFields[];
  enum LinkColumn { kSuccessor, kLink, kPredecessor, kType, kLag, kFormat, kCross };

  void OpenRows();
  ProjectRows* RowOf(std::int64_t uid);
  void WriteWhole(Element& tasks);
  void Write(Element& tasks);

  void Uid(Element& e, const char* name) { e.Integer(name, task_.uid); }
  void Id(Element& e, const char* name) { e.Integer(name, task_.id); }
  void Name(Element& e, const char* name) { e.Text(name, task_.name, kLongestName); }
  void Type(Element& e, const char* name) { e.Integer(name, kFixedDuration); }
  void Zero(Element& e, const char* name) { e.Integer(name, 0); }
  void Outline(Element& e, const char* name) { e.Text(name, outline_, kLongestText); }
  void Level(Element& e, const char* name) { e.Integer(name, level_); }
  void Priority(Element& e, const char* name) { e.Integer(name, kMiddlePriority); }
  void Start(Element& e, const char* name) { e.Date(name, start_); }
  void Finish(Element& e, const char* name) { e.Date(name, finish_); }
  void LateStart(Element& e, const char* name) {
    e.Date(name, schedule::MomentOf(moments_.lateStart));
  }
  void LateFinish(Element& e, const char* name) {
    e.Date(name, schedule::MomentOf(moments_.lateFinish));
  }
  void Duration(Element& e, const char* name) { e.Duration(name, task_.duration); }
  void DurationFormat(Element& e, const char* name) {
    e.Integer(name, FormatOr(task_.durationFormat, schedule::kFormatDays));
  }
  void Work(Element& e, const char* name) {
    const auto work = work_.find(task_.uid);
    e.Duration(name, work == work_.end() ? 0 : work->second);
  }
  void Milestone(Element& e, const char* name) {
    e.Flag(name, !task_.summary && task_.duration == 0);
  }
  void Summary(Element& e, const char* name) { e.Flag(name, task_.summary); }
  void Critical(Element& e, const char* name) { e.Flag(name, dates_.critical); }
  void Slack(Element& e, const char* name) { e.Integer(name, dates_.totalSlack); }
  void NoteText(Element& e, const char* name);
  void Links(Element& e, const char* name);
  void OuterLinks(Element& e, const char* name);
  void Fields(Element& e, const char* name);
  void Codes(Element& e, const char* name) {
    paper_.fields.WriteCodes(Owner::kTask, task_.uid, e, name);
  }
  void Timephased(Element& e, const char* name) {
    if (row_ != nullptr) paper_.timephased.Write(Owner::kTask, task_.uid, task_.uid, e, name);
  }
  void Contact(Element& e, const char* name) { TextField(e, name, kContact); }
  void Hyperlink(Element& e, const char* name) { TextField(e, name, kHyperlink); }
  void Address(Element& e, const char* name) { TextField(e, name, kHyperlink + 1); }
  void SubAddress(Element& e, const char* name) { TextField(e, name, kHyperlink + 2); }
  void SubprojectFile(Element& e, const char* name) {
    if (!IsExternal()) TextField(e, name, kSubprojectFile);
  }
  void ExternalFile(Element& e, const char* name) {
    if (IsExternal()) TextField(e, name, kSubprojectFile);
  }
  void TextField(Element& e, const char* name, std::int64_t field) {
    e.Text(name, paper_.fields.TextOf(Owner::kTask, task_.uid, field), kLongestText);
  }
  bool IsExternal() const { return row_ != nullptr && task_.rules.external; }
  void BaselineFormat(Element& e, const char* name) { e.Integer(name, schedule::kFormatDays); }
  bool HasBaseline() const;
  void Baseline(Element& e, const char* name);

  const PlanOnPaper& paper_;
  const LinksBySuccessor links_;
  const Baselines baselines_;
  const OwnedRows outerLinks_;  // into each task, from other projects
  const WorkOfTasks work_;
  const Notes notes_;
  OutlineNumbers numbers_;
  std::optional<ProjectRows> rows_;  // of MSP_TASKS; none for a plan that was brought back
  std::size_t baselineColumn_ = 0;

  // The task in hand.
  ProjectRows* row_ = nullptr;
  PlanTask task_;
  TaskDates dates_;
  schedule::TaskMoments moments_;
  DateTime start_;
  DateTime finish_;
  std::string outline_;
  std::int64_t level_ = 0;  // without the gaps that a pruned decomposition leaves
  std::span<const PlanLink* const> linksIn_;
};

const Field<TaskWriter> TaskWriter::kFields[] = {
    {"UID", "TASK_UID", Kind::kInteger, &TaskWriter::Uid},
    {"ID", nullptr, {}, &TaskWriter::Id},
    {"Name", nullptr, {}, &TaskWriter::Name},
    {"Type", "TASK_TYPE", Kind::kInteger, &TaskWriter::Type, 0, 2},
    {"IsNull", nullptr, {}, &TaskWriter::Zero},
    {"CreateDate", "TASK_CREATION_DATE", Kind::kDate},
    {"Contact", nullptr, {}, &TaskWriter::Contact},
    {"WBS", "TASK_WBS", Kind::kText, &TaskWriter::Outline},
    {"OutlineNumber", nullptr, {}, &TaskWriter::Outline},
    {"OutlineLevel", nullptr, {}, &TaskWriter::Level},
    {"Priority", "TASK_PRIORITY", Kind::kInteger, &TaskWriter::Priority, 0, 1000},
    {"Start", "TASK_START_DATE", Kind::kDate, &TaskWriter::Start},
    {"Finish", "TASK_FINISH_DATE", Kind::kDate, &TaskWriter::Finish},
    {"Duration", nullptr, {}, &TaskWriter::Duration},
    {"DurationFormat", nullptr, {}, &TaskWriter::DurationFormat},
    {"Work", "TASK_WORK", Kind::kWork, &TaskWriter::Work},
    {"Stop", "TASK_STOP_DATE", Kind::kDate},
    {"Resume", "TASK_RESUME_DATE", Kind::kDate},
    {"EffortDriven", "TASK_IS_EFFORT_DRIVEN", Kind::kFlag, &TaskWriter::Zero},
    {"Recurring", "TASK_IS_RECURRING", Kind::kFlag},
    {"OverAllocated", "TASK_IS_OVERALLOCATED", Kind::kFlag},
    {"Estimated", "TASK_DUR_IS_EST", Kind::kFlag, &TaskWriter::Zero},
    {"Milestone", "TASK_IS_MILESTONE", Kind::kFlag, &TaskWriter::Milestone},
    {"Summary", nullptr, {}, &TaskWriter::Summary},
    {"Critical", "TASK_IS_CRITICAL", Kind::kFlag, &TaskWriter::Critical},
    {"IsSubproject", "TASK_IS_SUBPROJ", Kind::kFlag},
    {"IsSubprojectReadOnly", "TASK_IS_READONLY_SUBPROJ", Kind::kFlag},
    {"SubprojectName", nullptr, {}, &TaskWriter::SubprojectFile},
    {"ExternalTask", "TASK_IS_EXTERNAL", Kind::kFlag},
    {"ExternalTaskProject", nullptr, {}, &TaskWriter::ExternalFile},
    {"EarlyStart", "TASK_EARLY_START", Kind::kDate, &TaskWriter::Start},
    {"EarlyFinish", "TASK_EARLY_FINISH", Kind::kDate, &TaskWriter::Finish},
    {"LateStart", "TASK_LATE_START", Kind::kDate, &TaskWriter::LateStart},
    {"LateFinish", "TASK_LATE_FINISH", Kind::kDate, &TaskWriter::LateFinish},
    {"FreeSlack", "TASK_FREE_SLACK", Kind::kInteger},
    {"TotalSlack", "TASK_TOTAL_SLACK", Kind::kInteger, &TaskWriter::Slack},
    {"FixedCost", "TASK_FIXED_COST", Kind::kDecimal},
    {"FixedCostAccrual", "TASK_FIXED_COST_ACCRUAL", Kind::kInteger, nullptr, 1, 3},
    {"PercentComplete", "TASK_PCT_COMP", Kind::kInteger, &TaskWriter::Zero, 0, 100},
    {"PercentWorkComplete", "TASK_PCT_WORK_COMP", Kind::kInteger, nullptr, 0, 100},
    {"Cost", "TASK_COST", Kind::kDecimal},
    {"OvertimeCost", "TASK_OVT_COST", Kind::kDecimal},
    {"OvertimeWork", "TASK_OVT_WORK", Kind::kWork},
    {"ActualStart", "TASK_ACT_START", Kind::kDate},
    {"ActualFinish", "TASK_ACT_FINISH", Kind::kDate},
    {"ActualDuration", "TASK_ACT_DUR", Kind::kDuration},
    {"ActualCost", "TASK_ACT_COST", Kind::kDecimal},
    {"ActualOvertimeCost", "TASK_ACT_OVT_COST", Kind::kDecimal},
    {"ActualWork", "TASK_ACT_WORK", Kind::kWork},
    {"ActualOvertimeWork", "TASK_ACT_OVT_WORK", Kind::kWork},
    {"RegularWork", "TASK_REG_WORK", Kind::kWork},
    {"RemainingDuration", "TASK_REM_DUR", Kind::kDuration},
    {"RemainingCost", "TASK_REM_COST", Kind::kDecimal},
    {"RemainingWork", "TASK_REM_WORK", Kind::kWork},
    {"RemainingOvertimeCost", "TASK_REM_OVT_COST", Kind::kDecimal},
    {"RemainingOvertimeWork", "TASK_REM_OVT_WORK", Kind::kWork},
    {"ConstraintType", "TASK_CONSTRAINT_TYPE", Kind::kInteger, &TaskWriter::Zero, 0, 7},
    {"CalendarUID", "TASK_CAL_UID", Kind::kInteger},
    {"ConstraintDate", "TASK_CONSTRAINT_DATE", Kind::kDate},
    {"Deadline", "TASK_DEADLINE", Kind::kDate},
    {"LevelAssignments", "TASK_LEVELING_ADJUSTS_ASSN", Kind::kFlag},
    {"LevelingCanSplit", "TASK_LEVELING_CAN_SPLIT", Kind::kFlag},
    {"LevelingDelay", "TASK_LEVELING_DELAY", Kind::kInteger},
    {"LevelingDelayFormat", "TASK_LEVELING_DELAY_FMT", Kind::kInteger, nullptr, 3, 12},
    {"PreLeveledStart", "TASK_PRELEVELED_START", Kind::kDate},
    {"PreLeveledFinish", "TASK_PRELEVELED_FINISH", Kind::kDate},
    {"Hyperlink", nullptr, {}, &TaskWriter::Hyperlink},
    {"HyperlinkAddress", nullptr, {}, &TaskWriter::Address},
    {"HyperlinkSubAddress", nullptr, {}, &TaskWriter::SubAddress},
    {"IgnoreResourceCalendar", "TASK_IGNORES_RES_CAL", Kind::kFlag},
    {"Notes", nullptr, {}, &TaskWriter::NoteText},
    {"HideBar", "TASK_BAR_IS_HIDDEN", Kind::kFlag},
    {"Rollup", "TASK_IS_ROLLED_UP", Kind::kFlag},
    {"PredecessorLink", nullptr, {}, &TaskWriter::Links},
    {"ExtendedAttribute", nullptr, {}, &TaskWriter::Fields},
    {"Baseline", nullptr, {}, &TaskWriter::Baseline},
    {"OutlineCode", nullptr, {}, &TaskWriter::Codes},
    {"TimephasedData", nullptr, {}, &TaskWriter::Timephased},
};

const Field<TaskWriter> TaskWriter::kBaselineFields[] = {
    {"Number", nullptr, {}, &TaskWriter::Zero},
    {"Start", "TASK_BASE_START", Kind::kDate},
    {"Finish", "TASK_BASE_FINISH", Kind::kDate},
    {"Duration", "TASK_BASE_DUR", Kind::kDuration},
    {"DurationFormat", "TASK_BASE_DUR_FMT", Kind::kInteger, &TaskWriter::BaselineFormat, 3, 12},
    {"Work", "TASK_BASE_WORK", Kind::kWork},
    {"Cost", "TASK_BASE_COST", Kind::kDecimal},
};

void TaskWriter::OpenRows() {
  if (paper_.plan.broughtBack) return;
  std::vector<const char*> columns;
  AddColumns(kFields, columns);
  baselineColumn_ = AddColumns(kBaselineFields, columns);
  rows_.emplace(paper_.connection,
                ProjectRows::Table{.name = "MSP_TASKS", .order = " order by TASK_ID"},
                paper_.project, columns);
}

// The rows come in the order of the plan's tasks, with those among them that the plan left out.
ProjectRows* TaskWriter::RowOf(std::int64_t uid) {
  if (!rows_) return nullptr;
  while (!rows_->AtEnd() && rows_->IntegerAt(0, 0) != uid) rows_->Next();
  return rows_->AtEnd() ? nullptr : &*rows_;
}

// The row of UID 0, where the project has one, comes before those of tasks; rows of Project's own,
// with numbers below 0, may stand in front of it.
void TaskWriter::WriteWhole(Element& tasks) {
  task_ = {};
  task_.name = paper_.plan.name;
  task_.summary = true;
  task_.duration = paper_.dates.finish;
  const schedule::Tenths whole = paper_.dates.finish;
  dates_ = {.earlyFinish = whole, .lateFinish = whole, .critical = true};
  moments_ = paper_.dates.whole;
  start_ = paper_.dates.Start();
  finish_ = paper_.dates.Finish();
  outline_ = "0";
  while (rows_ && !rows_->AtEnd() && rows_->IntegerAt(0, 0) < 0) rows_->Next();
  const bool stored = rows_ && !rows_->AtEnd() && rows_->IntegerAt(0, -1) == 0;
  row_ = stored ? &*rows_ : nullptr;
  Write(tasks);
}

void TaskWriter::WriteAll(Element& tasks) {
  WriteWhole(tasks);
  for (std::size_t task = 0; task < paper_.plan.tasks.size(); ++task) {
    task_ = paper_.plan.tasks[task];
    dates_ = paper_.dates.tasks[task];
    moments_ = paper_.dates.moments[task];
    start_ = paper_.dates.StartOf(task);
    finish_ = paper_.dates.FinishOf(task);
    outline_ = numbers_.Next(task_);
    level_ = std::ranges::count(outline_, '.') + 1;
    linksIn_ = links_.Into(task);
    row_ = RowOf(task_.uid);
    Write(tasks);
  }
}

void TaskWriter::Write(Element& tasks) {
  Element task = tasks.Child("Task");
  WriteFields(kFields, *this, row_, 0, task);
}

void TaskWriter::NoteText(Element& e, const char* name) {
  const auto note = notes_.find(task_.uid);
  if (note != notes_.end()) e.Text(name, note->second);
}

void TaskWriter::Links(Element& e, const char* name) {
  for (const PlanLink* link : linksIn_) {
    Element child = e.Child(name);
    child.Integer("PredecessorUID", paper_.plan.tasks[link->predecessor].uid);
    child.Integer("Type", static_cast<std::int64_t>(link->kind));
    child.Flag("CrossProject", false);
    child.Integer("LinkLag", link->lag.amount);
    constexpr std::int64_t kNoFormatOfLags = 21;
    const std::int64_t format = FormatOr(link->lag.format, schedule::kFormatDays);
    child.Integer("LagFormat", format == kNoFormatOfLags ? schedule::kFormatDays : format);
  }
  if (row_ != nullptr) OuterLinks(e, name);
}

// Those that come from another project.
void TaskWriter::OuterLinks(Element& e, const char* name) {
  static constexpr RowField kEnds[] = {{"PredecessorUID", kPredecessor, Kind::kInteger},
                                       {"Type", kType, Kind::kInteger, 0, 3},
                                       {"CrossProject", kCross, Kind::kFlag}};
  static constexpr RowField kLags[] = {{"LinkLag", kLag, Kind::kInteger},
                                       {"LagFormat", kFormat, Kind::kInteger, 3, 12}};
  for (const Row& row : outerLinks_.Of(task_.uid)) {
    if (!IsNumeric(row[kLink])) continue;
    Element child = e.Child(name);
    WriteRow(kEnds, row, child);
    child.Text("CrossProjectName",
               paper_.fields.TextOf(Owner::kLink, ToInt32(row[kLink]), kOuterPredecessor));
    WriteRow(kLags, row, child);
  }
}

// The number of the occurrence goes before what another program keeps in the field.
void TaskWriter::Fields(Element& e, const char* name) {
  if (task_.occurrence) {
    Element field = e.Child(name);
    field.Integer("FieldID", kText1Field);
    field.Integer("Value", *task_.occurrence);
  }
  if (row_ == nullptr) return;
  paper_.fields.WriteValues(Owner::kTask, task_.uid, e, name, task_.occurrence ? kText1Field : 0);
}

// A baseline may lack its dates.
bool TaskWriter::HasBaseline() const {
  enum Column { kStart, kFinish, kDuration, kFormat, kWork, kCost };
  return !row_->At(baselineColumn_ + kStart).IsNull() ||
         AnyNumber(*row_, baselineColumn_ + kDuration, 1) ||
         AnyNumber(*row_, baselineColumn_ + kWork, 2);
}

void TaskWriter::Baseline(Element& e, const char* name) {
  if (row_ == nullptr) return;
  if (HasBaseline()) {
    Element baseline = e.Child(name);
    WriteFields(kBaselineFields, *this, row_, baselineColumn_, baseline);
  }
  baselines_.Write(task_.uid, e, name);
}

}  // namespace

void WriteTasks(const PlanOnPaper& paper, Element& project) {
  Element tasks = project.Child("Tasks");
  TaskWriter(paper, tasks.LossesOfFile()).WriteAll(tasks);
}

}  // namespace merivane::mspdi
