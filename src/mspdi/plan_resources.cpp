#include <cmath>
#include <map>
#include <optional>
#include <unordered_set>

#include "plan_notes.h"
#include "plan_parts.h"
#include "stored_fields.h"

namespace merivane::mspdi {

namespace {

using schedule::ProjectRows;

constexpr std::int64_t kWork = 1;  // a person or machine; 0: material

// Resources of the MSP_ tables, and those of a plan that was brought back with what MSP_RESOURCES
// knows of the same name.
class ResourceWriter {
 public:
  explicit ResourceWriter(const PlanOnPaper& paper) : paper_(paper) {}

  void WriteStored(Element& resources);
  void WriteBrought(Element& resources);
  const std::unordered_set<std::int64_t>& Uids() const { return uids_; }

 private:
  static const Field<ResourceWriter> kFields[];

  void Uid(Element& e, const char* name) { e.Integer(name, uid_); }
  void Name(Element& e, const char* name) { e.Text(name, name_, kLongestText); }
  void Type(Element& e, const char* name) { e.Integer(name, isWork_ ? kWork : 0); }
  void Zero(Element& e, const char* name) { e.Integer(name, 0); }
  void Units(Element& e, const char* name) { e.Decimal(name, units_); }
  void NoteText(Element& e, const char* name) { e.Text(name, note_); }

  const PlanOnPaper& paper_;
  std::unordered_set<std::int64_t> uids_;

  // The resource in hand.
  std::int64_t uid_ = 0;
  std::string name_;
  bool isWork_ = true;
  double units_ = 1;
  std::string note_;
};

const Field<ResourceWriter> ResourceWriter::kFields[] = {
    {"UID", "RES_UID", Kind::kInteger, &ResourceWriter::Uid},
    {"ID", "RES_ID", Kind::kInteger, &ResourceWriter::Uid},
    {"Name", nullptr, {}, &ResourceWriter::Name},
    {"Type", nullptr, {}, &ResourceWriter::Type},
    {"IsNull", nullptr, {}, &ResourceWriter::Zero},
    {"Initials", "RES_INITIALS", Kind::kText},
    {"Phonetics", "RES_PHONETICS", Kind::kText},
    {"MaterialLabel", "RES_MATERIAL_LABEL", Kind::kText},
    {"MaxUnits", "RES_MAX_UNITS", Kind::kDecimal, &ResourceWriter::Units},
    {"PeakUnits", "RES_PEAK", Kind::kDecimal},
    {"OverAllocated", "RES_IS_OVERALLOCATED", Kind::kFlag},
    {"AvailableFrom", "RES_AVAIL_FROM", Kind::kDate},
    {"AvailableTo", "RES_AVAIL_TO", Kind::kDate},
    {"CanLevel", "RES_CAN_LEVEL", Kind::kFlag},
    {"AccrueAt", "RES_ACCRUE_AT", Kind::kInteger, nullptr, 1, 4},
    {"Work", "RES_WORK", Kind::kWork},
    {"RegularWork", "RES_REG_WORK", Kind::kWork},
    {"OvertimeWork", "RES_OVT_WORK", Kind::kWork},
    {"ActualWork", "RES_ACT_WORK", Kind::kWork},
    {"RemainingWork", "RES_REM_WORK", Kind::kWork},
    {"StandardRate", "RES_STD_RATE", Kind::kDecimal},
    {"StandardRateFormat", "RES_STD_RATE_FMT", Kind::kInteger, nullptr, 1, 5},
    {"Cost", "RES_COST", Kind::kDecimal},
    {"OvertimeRate", "RES_OVT_RATE", Kind::kDecimal},
    {"OvertimeRateFormat", "RES_OVT_RATE_FMT", Kind::kInteger, nullptr, 1, 5},
    {"OvertimeCost", "RES_OVT_COST", Kind::kDecimal},
    {"CostPerUse", "RES_COST_PER_USE", Kind::kDecimal},
    {"ActualCost", "RES_ACT_COST", Kind::kDecimal},
    {"RemainingCost", "RES_REM_COST", Kind::kDecimal},
    {"Notes", nullptr, {}, &ResourceWriter::NoteText},
};

void ResourceWriter::WriteStored(Element& resources) {
  std::vector<const char*> columns;
  AddColumns(kFields, columns);
  const std::size_t extra = columns.size();
  enum Extra { kName, kType, kRtf, kGlossary };
  columns.insert(columns.end(), {"RES_NAME", "RES_TYPE", "RES_RTF_NOTES", "KV7_OBJ_GLOSSARY"});
  ProjectRows rows(paper_.connection, {.name = "MSP_RESOURCES"}, paper_.project, columns);
  for (; !rows.AtEnd(); rows.Next()) {
    uid_ = rows.IntegerAt(0, 0);
    if (uid_ <= 0 || !uids_.insert(uid_).second) continue;
    name_ = rows.TextAt(extra + kName);
    isWork_ = rows.IntegerAt(extra + kType, kWork) != 0;
    const Value rtf = rows.At(extra + kRtf);
    note_ = rtf.IsNull() ? rows.TextAt(extra + kGlossary) : PlainNote(rtf);
    Element resource = resources.Child("Resource");
    WriteFields(kFields, *this, &rows, 0, resource);
  }
}

void ResourceWriter::WriteBrought(Element& resources) {
  std::map<std::string, std::string> notes;
  enum StoredColumn { kStoredName, kGlossary };
  ProjectRows stored(paper_.connection, {.name = "MSP_RESOURCES"}, paper_.project,
                     {"RES_NAME", "KV7_OBJ_GLOSSARY"});
  for (; !stored.AtEnd(); stored.Next()) {
    notes.emplace(stored.TextAt(kStoredName), stored.TextAt(kGlossary));
  }
  enum Column { kPid, kName, kQuantity };
  ProjectRows rows(paper_.connection, {.name = "ProjectRes", .projectColumn = "Msp_ProjID"},
                   paper_.project, {"PID", "Name", "Qty"});
  for (; !rows.AtEnd(); rows.Next()) {
    uid_ = rows.IntegerAt(kPid, 0);
    if (uid_ <= 0 || !uids_.insert(uid_).second) continue;
    name_ = rows.TextAt(kName);
    const Value quantity = rows.At(kQuantity);
    units_ = IsNumeric(quantity) ? ToDouble(quantity) : 1;
    note_ = notes[name_];
    Element resource = resources.Child("Resource");
    WriteFields(kFields, *this, nullptr, 0, resource);
  }
}

class AssignmentWriter {
 public:
  AssignmentWriter(const PlanOnPaper& paper, const std::unordered_set<std::int64_t>& resources)
      : paper_(paper), resources_(resources) {
    for (std::size_t task = 0; task < paper.plan.tasks.size(); ++task) {
      tasks_.emplace(paper.plan.tasks[task].uid, task);
    }
  }

  std::size_t WriteStored(Element& assignments);
  std::size_t WriteBrought(Element& assignments);

 private:
  static const Field<AssignmentWriter> kFields[];

  // False where the task or the resource isn't in the plan.
  bool Take(std::int64_t taskUid, std::int64_t resourceUid);

  void Uid(Element& e, const char* name) { e.Integer(name, uid_); }
  void TaskUid(Element& e, const char* name) { e.Integer(name, paper_.plan.tasks[task_].uid); }
  void ResourceUid(Element& e, const char* name) { e.Integer(name, resource_); }
  void Start(Element& e, const char* name) { e.Date(name, paper_.dates.StartOf(task_)); }
  void Finish(Element& e, const char* name) { e.Date(name, paper_.dates.FinishOf(task_)); }
  void Units(Element& e, const char* name) { e.Decimal(name, units_); }
  void Work(Element& e, const char* name) {
    const auto duration = static_cast<double>(paper_.plan.tasks[task_].duration);
    e.Duration(name, static_cast<schedule::Tenths>(std::trunc(duration * units_ + 0.5)));
  }

  const PlanOnPaper& paper_;
  const std::unordered_set<std::int64_t>& resources_;
  std::unordered_map<std::int64_t, std::size_t> tasks_;

  // The assignment in hand.
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
    {"ActualStart", "ASSN_ACT_START", Kind::kDate},
    {"ActualWork", "ASSN_ACT_WORK", Kind::kWork},
    {"Confirmed", "ASSN_IS_CONFIRMED", Kind::kFlag},
    {"Cost", "ASSN_COST", Kind::kDecimal},
    {"CostRateTable", "ASSN_COST_RATE_TABLE", Kind::kInteger, nullptr, 0, 4},
    {"Delay", "ASSN_DELAY", Kind::kInteger},
    {"Finish", "ASSN_FINISH_DATE", Kind::kDate, &AssignmentWriter::Finish},
    {"OvertimeWork", "ASSN_OVT_WORK", Kind::kWork},
    {"RegularWork", "ASSN_REG_WORK", Kind::kWork},
    {"RemainingCost", "ASSN_REM_COST", Kind::kDecimal},
    {"RemainingWork", "ASSN_REM_WORK", Kind::kWork},
    {"Start", "ASSN_START_DATE", Kind::kDate, &AssignmentWriter::Start},
    {"Units", "ASSN_UNITS", Kind::kDecimal, &AssignmentWriter::Units},
    {"Work", "ASSN_WORK", Kind::kWork, &AssignmentWriter::Work},
    {"WorkContour", "ASSN_WORK_CONTOUR", Kind::kInteger, nullptr, 0, 8},
};

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
  ProjectRows rows(paper_.connection, {.name = "MSP_ASSIGNMENTS"}, paper_.project, columns);
  enum Column { kTask, kResource };
  for (; !rows.AtEnd(); rows.Next()) {
    if (!Take(rows.IntegerAt(kTask, 0), rows.IntegerAt(kResource, 0))) continue;
    Element assignment = assignments.Child("Assignment");
    WriteFields(kFields, *this, &rows, 0, assignment);
  }
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

void WriteResources(const PlanOnPaper& paper, Element& project, WrittenCounts& counts) {
  ResourceWriter resources(paper);
  Element list = project.Child("Resources");
  if (paper.plan.broughtBack) {
    resources.WriteBrought(list);
  } else {
    resources.WriteStored(list);
  }
  counts.resources = resources.Uids().size();
  AssignmentWriter assignments(paper, resources.Uids());
  Element assigned = project.Child("Assignments");
  counts.assignments = paper.plan.broughtBack ? assignments.WriteBrought(assigned)
                                              : assignments.WriteStored(assigned);
}

}  // namespace merivane::mspdi
