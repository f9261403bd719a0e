#include <map>

#include "mspdi/plan_reader.h"
#include "plan_parts.h"
#include "stored_fields.h"

namespace merivane::mspdi {

namespace {

using schedule::ProjectRows;

constexpr std::int64_t kWork = 1;  // a person or machine; 0: material

// Text fields that Project itself fills.
constexpr std::int64_t kGroup = 205520899;
constexpr std::int64_t kCode = 205520906;
constexpr std::int64_t kEMail = 205520931;
constexpr std::int64_t kHyperlink = 205521034;  // behind it address and address within
constexpr std::int64_t kAccount = 205521207;

// Resources of the MSP_ tables, and those of a plan that was brought back with what MSP_RESOURCES
// knows of the same name.
class ResourceWriter {
 public:
  explicit ResourceWriter(const PlanOnPaper& paper)
      : paper_(paper),
        baselines_(paper.connection, paper.project, Owner::kResource),
        rates_(paper.connection, paper.project) {}

  void WriteStored(Element& resources);
  void WriteBrought(Element& resources);
  const Uids& Written() const { return uids_; }

 private:
  static const Field<ResourceWriter> kFields[];
  static const Field<ResourceWriter> kBaselineFields[];

  void Uid(Element& e, const char* name) { e.Integer(name, uid_); }
  void Name(Element& e, const char* name) { e.Text(name, name_, kLongestName); }
  void Type(Element& e, const char* name) { e.Integer(name, isWork_ ? kWork : 0); }
  void Unit(Element& e, const char* name) { e.Text(name, unit_, kLongestText); }
  void IsCost(Element& e, const char* name) {
    if (isCost_) e.Flag(name, true);
  }
  void TakeNote(const std::string& note);
  void Zero(Element& e, const char* name) { e.Integer(name, 0); }
  void Units(Element& e, const char* name) {
    if (isWork_) e.Decimal(name, units_);
  }
  void NoteText(Element& e, const char* name) { e.Text(name, note_); }
  void Account(Element& e, const char* name) { TextField(e, name, kAccount); }
  void Code(Element& e, const char* name) { TextField(e, name, kCode); }
  void Group(Element& e, const char* name) { TextField(e, name, kGroup); }
  void EMail(Element& e, const char* name) { TextField(e, name, kEMail); }
  void Hyperlink(Element& e, const char* name) { TextField(e, name, kHyperlink); }
  void Address(Element& e, const char* name) { TextField(e, name, kHyperlink + 1); }
  void SubAddress(Element& e, const char* name) { TextField(e, name, kHyperlink + 2); }
  void TextField(Element& e, const char* name, std::int64_t field) {
    if (row_ == nullptr) return;
    e.Text(name, paper_.fields.TextOf(Owner::kResource, uid_, field), kLongestText);
  }
  void Fields(Element& e, const char* name) {
    if (row_ != nullptr) paper_.fields.WriteValues(Owner::kResource, uid_, e, name);
  }
  void Codes(Element& e, const char* name) {
    if (row_ != nullptr) paper_.fields.WriteCodes(Owner::kResource, uid_, e, name);
  }
  void Baseline(Element& e, const char* name);
  void Availability(Element& e, const char* name) {
    if (row_ != nullptr) rates_.WriteAvailability(uid_, e, name);
  }
  void Rates(Element& e, const char* name) {
    if (row_ != nullptr) rates_.WriteRates(uid_, e, name);
  }
  void Timephased(Element& e, const char* name) {
    if (row_ != nullptr) paper_.timephased.Write(Owner::kResource, uid_, uid_, e, name);
  }

  const PlanOnPaper& paper_;
  const Baselines baselines_;
  const RatesOfResources rates_;
  Uids uids_;

  // The resource in hand.
  ProjectRows* row_ = nullptr;
  std::size_t baselineColumn_ = 0;
  std::int64_t uid_ = 0;
  std::string name_;
  bool isWork_ = true;
  bool isCost_ = false;
  std::string unit_;  // of a material
  double units_ = 1;
  std::string note_;
};

const Field<ResourceWriter> ResourceWriter::kFields[] = {
    {"UID", "RES_UID", Kind::kInteger, &ResourceWriter::Uid},
    {"ID", "RES_ID", Kind::kInteger, &ResourceWriter::Uid, 1},
    {"Name", nullptr, {}, &ResourceWriter::Name},
    {"Type", nullptr, {}, &ResourceWriter::Type},
    {"IsNull", nullptr, {}, &ResourceWriter::Zero},
    {"Initials", "RES_INITIALS", Kind::kText},
    {"Phonetics", "RES_PHONETICS", Kind::kText},
    {"NTAccount", nullptr, {}, &ResourceWriter::Account},
    {"MaterialLabel", "RES_MATERIAL_LABEL", Kind::kText, &ResourceWriter::Unit},
    {"Code", nullptr, {}, &ResourceWriter::Code},
    {"Group", nullptr, {}, &ResourceWriter::Group},
    {"WorkGroup", "RES_WORKGROUP_MESSAGING", Kind::kInteger, nullptr, 0, 3},
    {"EmailAddress", nullptr, {}, &ResourceWriter::EMail},
    {"Hyperlink", nullptr, {}, &ResourceWriter::Hyperlink},
    {"HyperlinkAddress", nullptr, {}, &ResourceWriter::Address},
    {"HyperlinkSubAddress", nullptr, {}, &ResourceWriter::SubAddress},
    {"MaxUnits", "RES_MAX_UNITS", Kind::kUnits, &ResourceWriter::Units},
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
    {"ActualOvertimeWork", "RES_ACT_OVT_WORK", Kind::kWork},
    {"RemainingOvertimeWork", "RES_REM_OVT_WORK", Kind::kWork},
    {"StandardRate", "RES_STD_RATE", Kind::kDecimal},
    {"StandardRateFormat", "RES_STD_RATE_FMT", Kind::kRateFormat, nullptr, 1, 8},
    {"Cost", "RES_COST", Kind::kDecimal},
    {"OvertimeRate", "RES_OVT_RATE", Kind::kDecimal},
    {"OvertimeRateFormat", "RES_OVT_RATE_FMT", Kind::kRateFormat, nullptr, 1, 7},
    {"OvertimeCost", "RES_OVT_COST", Kind::kDecimal},
    {"CostPerUse", "RES_COST_PER_USE", Kind::kDecimal},
    {"ActualCost", "RES_ACT_COST", Kind::kDecimal},
    {"ActualOvertimeCost", "RES_ACT_OVT_COST", Kind::kDecimal},
    {"RemainingCost", "RES_REM_COST", Kind::kDecimal},
    {"RemainingOvertimeCost", "RES_REM_OVT_COST", Kind::kDecimal},
    {"CalendarUID", "RES_CAL_UID", Kind::kInteger},
    {"Notes", nullptr, {}, &ResourceWriter::NoteText},
    {"ExtendedAttribute", nullptr, {}, &ResourceWriter::Fields},
    {"Baseline", nullptr, {}, &ResourceWriter::Baseline},
    {"OutlineCode", nullptr, {}, &ResourceWriter::Codes},
    {"IsCostResource", nullptr, {}, &ResourceWriter::IsCost},
    {"AvailabilityPeriods", nullptr, {}, &ResourceWriter::Availability},
    {"Rates", nullptr, {}, &ResourceWriter::Rates},
    {"TimephasedData", nullptr, {}, &ResourceWriter::Timephased},
};

const Field<ResourceWriter> ResourceWriter::kBaselineFields[] = {
    {"Number", nullptr, {}, &ResourceWriter::Zero},
    {"Work", "RES_BASE_WORK", Kind::kWork},
    {"Cost", "RES_BASE_COST", Kind::kDecimal},
};

// A note may begin with what the resource is.
void ResourceWriter::TakeNote(const std::string& note) {
  const KindAndText resource = TakeKind(note);
  if (resource.kind != ResourceKind::kWork) isWork_ = false;
  isCost_ = resource.kind == ResourceKind::kCost;
  unit_ = resource.unit;
  note_ = resource.text;
}

void ResourceWriter::Baseline(Element& e, const char* name) {
  if (row_ == nullptr) return;
  if (AnyNumber(*row_, baselineColumn_, 2)) {
    Element baseline = e.Child(name);
    WriteFields(kBaselineFields, *this, row_, baselineColumn_, baseline);
  }
  baselines_.Write(uid_, e, name);
}

void ResourceWriter::WriteStored(Element& resources) {
  std::vector<const char*> columns;
  AddColumns(kFields, columns);
  baselineColumn_ = AddColumns(kBaselineFields, columns);
  const std::size_t extra = columns.size();
  enum Extra { kName, kType, kRtf, kGlossary };
  columns.insert(columns.end(), {"RES_NAME", "RES_TYPE", "RES_RTF_NOTES", "KV7_OBJ_GLOSSARY"});
  ProjectRows rows(paper_.connection, {.name = "MSP_RESOURCES"}, paper_.project, columns);
  row_ = &rows;
  for (; !rows.AtEnd(); rows.Next()) {
    uid_ = rows.IntegerAt(0, 0);
    if (uid_ <= 0 || !uids_.insert(uid_).second) continue;
    name_ = rows.TextAt(extra + kName);
    isWork_ = rows.IntegerAt(extra + kType, kWork) != 0;
    const Value rtf = rows.At(extra + kRtf);
    TakeNote(rtf.IsNull() ? rows.TextAt(extra + kGlossary)
                          : PlainNote(rtf, resources.LossesOfFile().notes));
    Element resource = resources.Child("Resource");
    WriteFields(kFields, *this, &rows, 0, resource);
  }
  row_ = nullptr;
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
    isWork_ = true;
    TakeNote(notes[name_]);
    Element resource = resources.Child("Resource");
    WriteFields(kFields, *this, nullptr, 0, resource);
  }
}

}  // namespace

Uids ReadMaterials(Connection& connection, std::int32_t project, const schedule::Plan& plan) {
  Uids materials;
  std::unordered_set<std::string> names;
  enum Column { kUid, kName, kGlossary };
  ProjectRows stored(connection, {.name = "MSP_RESOURCES"}, project,
                     {"RES_UID", "RES_NAME", "KV7_OBJ_GLOSSARY"});
  for (; !stored.AtEnd(); stored.Next()) {
    if (TakeKind(stored.TextAt(kGlossary)).kind == ResourceKind::kWork) continue;
    materials.insert(stored.IntegerAt(kUid, 0));
    names.insert(stored.TextAt(kName));
  }
  if (!plan.broughtBack) return materials;
  materials.clear();
  ProjectRows rows(connection, {.name = "ProjectRes", .projectColumn = "Msp_ProjID"}, project,
                   {"PID", "Name"});
  for (; !rows.AtEnd(); rows.Next()) {
    if (names.contains(rows.TextAt(kName))) materials.insert(rows.IntegerAt(kUid, 0));
  }
  return materials;
}

Uids WriteResources(const PlanOnPaper& paper, Element& project) {
  ResourceWriter resources(paper);
  Element list = project.Child("Resources");
  if (paper.plan.broughtBack) {
    resources.WriteBrought(list);
  } else {
    resources.WriteStored(list);
  }
  return resources.Written();
}

}  // namespace merivane::mspdi
