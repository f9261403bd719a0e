#include <cmath>
#include <unordered_map>

#include "plan_parts.h"
#include "stored_fields.h"

namespace merivane::mspdi {

namespace {

using schedule::ProjectRows;

constexpr std::int64_t kHyperlink = 255852696;  // behind it address and address within

class AssignmentWriter {
 public:
  AssignmentWriter(const PlanOnPaper& paper, const Uids& resources)
      : paper_(paper),
        resources_(resources),
        baselines_(paper.connection, paper.project, Owner::kAssignment) {
    for (std::size_t task = 0; task < paper.plan.tasks.size(); ++task) {
      tasks_.emplace(paper.plan.tasks[task].uid, task);
    }
  }

  std::size_t WriteStored(Element& assignments);
  std::size_t WriteBrought(Element& assignments);

 private:
  enum Extra { kUid, kWork, kUnits };
  static const Field<AssignmentWriter> kFields[];
  static const Field<AssignmentWriter> kBaselineFields[];

  // False where the task or the resource isn't in the plan.
  bool Take(std::int64_t taskUid, std::int64_t resourceUid);

  void Uid(Element& e, const char* name) { e.Integer(name, uid_); }
  void TaskUid(Element& e, const char* name) { e.Integer(name, paper_.plan.tasks[task_].uid); }
  void ResourceUid(Element& e, const char* name) { e.Integer(name, resource_); }
  void Start(Element& e, const char* name) { e.Date(name, paper_.dates.StartOf(task_)); }
  void Finish(Element& e, const char* name) { e.Date(name, paper_.dates.FinishOf(task_)); }
  void Units(Element& e, const char* name) { e.Decimal(name, units_); }
  void Work(Element& e, const char* name);
  void Zero(Element& e, const char* name) { e.Integer(name, 0); }
  void Hyperlink(Element& e, const char* name) { TextField(e, name, kHyperlink); }
  void Address(Element& e, const char* name) { TextField(e, name, kHyperlink + 1); }
  void SubAddress(Element& e, const char* name) { TextField(e, name, kHyperlink + 2); }
  void TextField(Element& e, const char* name, std::int64_t field) {
    if (row_ == nullptr) return;
    e.Text(name, paper_.fields.TextOf(Owner::kAssignment, stored_, field), kLongestText);
  }
  void Fields(Element& e, const char* name) {
    if (row_ != nullptr) paper_.fields.WriteValues(Owner::kAssignment, stored_, e, name);
  }
  void Baseline(Element& e, const char* name);
  void Timephased(Element& e, const char* name) {
    if (row_ != nullptr) paper_.timephased.Write(Owner::kAssignment, stored_, uid_, e, name);
  }

  const PlanOnPaper& paper_;
  const Uids& resources_;
  const Baselines baselines_;
  std::unordered_map<std::int64_t, std::size_t> tasks_;

  // The assignment in hand.
  ProjectRows* row_ = nullptr;
  std::size_t baselineColumn_ = 0;
  std::size_t extra_ = 0;    // the columns of Extra
  std::int64_t stored_ = 0;  // its number in the tables
  std::int64_t uid_ = 0;
  std::size_t task_ = 0;
  std::int64_t resource_ = 0;
  double units_ = 1;
};

const Field<AssignmentWriter> AssignmentWriter::kFields[] = {
    {"UID", nullptr, {}, &AssignmentWriter::Uid},
    {"TaskUID", "TASK_UID", Kind::kInteger, &AssignmentWriter::TaskUid},
    {"ResourceUID", "RES_UID", Kind::kInteger, &AssignmentWriter::ResourceUid},
    {"ActualCost", "ASSN_ACT_COST", Kind::kDecimal},
    {"ActualFinish", "ASSN_ACT_FINISH", Kind::kDate},
    {"ActualOvertimeCost", "ASSN_ACT_OVT_COST", Kind::kDecimal},
    {"ActualOvertimeWork", "ASSN_ACT_OVT_WORK", Kind::kWork},
    {"ActualStart", "ASSN_ACT_START", Kind::kDate},
    {"ActualWork", "ASSN_ACT_WORK", Kind::kWork},
    {"Confirmed", "ASSN_IS_CONFIRMED", Kind::kFlag},
    {"Cost", "ASSN_COST", Kind::kDecimal},
    {"CostRateTable", "ASSN_COST_RATE_TABLE", Kind::kInteger, nullptr, 0, 4},
    {"Delay", "ASSN_DELAY", Kind::kInteger},
    {"Finish", "ASSN_FINISH_DATE", Kind::kDate, &AssignmentWriter::Finish},
    {"Hyperlink", nullptr, {}, &AssignmentWriter::Hyperlink},
    {"HyperlinkAddress", nullptr, {}, &AssignmentWriter::Address},
    {"HyperlinkSubAddress", nullptr, {}, &AssignmentWriter::SubAddress},
    {"LevelingDelay", "ASSN_LEVELING_DELAY", Kind::kInteger},
    {"Notes", "ASSN_RTF_NOTES", Kind::kNote},
    {"OvertimeWork", "ASSN_OVT_WORK", Kind::kWork},
    {"RegularWork", "ASSN_REG_WORK", Kind::kWork},
    {"RemainingCost", "ASSN_REM_COST", Kind::kDecimal},
    {"RemainingOvertimeCost", "ASSN_REM_OVT_COST", Kind::kDecimal},
    {"RemainingOvertimeWork", "ASSN_REM_OVT_WORK", Kind::kWork},
    {"RemainingWork", "ASSN_REM_WORK", Kind::kWork},
    {"Start", "ASSN_START_DATE", Kind::kDate, &AssignmentWriter::Start},
    {"Units", "ASSN_UNITS", Kind::kUnits, &AssignmentWriter::Units},
    {"Work", nullptr, {}, &AssignmentWriter::Work},
    {"WorkContour", "ASSN_WORK_CONTOUR", Kind::kInteger, nullptr, 0, 8},
    {"ExtendedAttribute", nullptr, {}, &AssignmentWriter::Fields},
    {"Baseline", nullptr, {}, &AssignmentWriter::Baseline},
    {"TimephasedData", nullptr, {}, &AssignmentWriter::Timephased},
};

const Field<AssignmentWriter> AssignmentWriter::kBaselineFields[] = {
    {"Number", nullptr, {}, &AssignmentWriter::Zero}, {"Start", "ASSN_BASE_START", Kind::kDate},
    {"Finish", "ASSN_BASE_FINISH", Kind::kDate},      {"Work", "ASSN_BASE_WORK", Kind::kWork},
    {"Cost", "ASSN_BASE_COST", Kind::kDecimal},
};

// Of a material it is the quantity in hours, as Project has it.
void AssignmentWriter::Work(Element& e, const char* name) {
  const bool material = paper_.materials.contains(resource_);
  if (!material && row_ != nullptr && e.Stored(name, Kind::kWork, row_->At(extra_ + kWork))) return;
  const Value units = row_ != nullptr ? row_->At(extra_ + kUnits) : Value();
  const double count = IsNumeric(units) ? ToDouble(units) : units_;
  const auto each =
      material ? schedule::kTenthsOfHour : static_cast<double>(paper_.plan.tasks[task_].duration);
  e.Duration(name, static_cast<schedule::Tenths>(std::trunc(each * count + 0.5)));
}

void AssignmentWriter::Baseline(Element& e, const char* name) {
  if (row_ == nullptr) return;
  constexpr std::size_t kFirstFigure = 2;
  if (!row_->At(baselineColumn_).IsNull() || AnyNumber(*row_, baselineColumn_ + kFirstFigure, 2)) {
    Element baseline = e.Child(name);
    WriteFields(kBaselineFields, *this, row_, baselineColumn_, baseline);
  }
  baselines_.Write(stored_, e, name);
}

bool AssignmentWriter::Take(std::int64_t taskUid, std::int64_t resourceUid) {
  const auto task = tasks_.find(taskUid);
  if (task == tasks_.end() || !resources_.contains(resourceUid)) return false;
  ++uid_;
  task_ = task->second;
  resource_ = resourceUid;
  return true;
}

std::size_t AssignmentWriter::WriteStored(Element& assignments) {
  std::vector<const char*> columns;
  AddColumns(kFields, columns);
  baselineColumn_ = AddColumns(kBaselineFields, columns);
  extra_ = columns.size();
  columns.insert(columns.end(), {"ASSN_UID", "ASSN_WORK", "ASSN_UNITS"});
  ProjectRows rows(paper_.connection, {.name = "MSP_ASSIGNMENTS"}, paper_.project, columns);
  enum Column { kTask, kResource };
  row_ = &rows;
  for (; !rows.AtEnd(); rows.Next()) {
    if (!Take(rows.IntegerAt(kTask, 0), rows.IntegerAt(kResource, 0))) continue;
    stored_ = rows.IntegerAt(extra_ + kUid, 0);
    Element assignment = assignments.Child("Assignment");
    WriteFields(kFields, *this, &rows, 0, assignment);
  }
  row_ = nullptr;
  return static_cast<std::size_t>(uid_);
}

std::size_t AssignmentWriter::WriteBrought(Element& assignments) {
  enum Column { kTask, kResource, kQuantity };
  ProjectRows rows(paper_.connection, {.name = "ProjectResReqts", .projectColumn = "Msp_ProjID"},
                   paper_.project, {"ActivityPID", "ResourcePID", "Qty"});
  for (; !rows.AtEnd(); rows.Next()) {
    if (!Take(rows.IntegerAt(kTask, 0), rows.IntegerAt(kResource, 0))) continue;
    const Value quantity = rows.At(kQuantity);
    units_ = IsNumeric(quantity) ? ToDouble(quantity) : 1;
    Element assignment = assignments.Child("Assignment");
    WriteFields(kFields, *this, nullptr, 0, assignment);
  }
  return static_cast<std::size_t>(uid_);
}

}  // namespace

std::size_t WriteAssignments(const PlanOnPaper& paper, const Uids& resources, Element& project) {
  AssignmentWriter assignments(paper, resources);
  Element assigned = project.Child("Assignments");
  return paper.plan.broughtBack ? assignments.WriteBrought(assigned)
                                : assignments.WriteStored(assigned);
}

}  // namespace merivane::mspdi
