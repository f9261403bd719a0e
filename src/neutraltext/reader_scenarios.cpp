#include <utility>

#include "reader_lines.h"
#include "reader_records.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

using F = FieldVariables;

constexpr RecordColumn kColumns[] = {{"Num", &F::Num},
                                     {"Name", &F::Name},
                                     {"Parent_Num", &F::Parent_Num},
                                     {"Parent", &F::Parent},
                                     {"Type", &F::Scenario_Type},
                                     {"Creator", &F::Creator},
                                     {"ID", &F::ID},
                                     {"Revision_Number", &F::Revision_Number},
                                     {"Review_Status", &F::Review_Status},
                                     {"Date_Created", &F::Date_Created},
                                     {"Last_Modified", &F::Last_Modified},
                                     {"Purpose", &F::Purpose},
                                     {"Viewpoint", &F::Viewpoint},
                                     {"Context", &F::Context},
                                     {"Description", &F::Description},
                                     {"Object_Occ_List", &F::Object_Occ_List},
                                     {"Fact_List", &F::Fact_List},
                                     {"Constraint_List", &F::Constraint_List},
                                     {"Note_List", &F::Note_List},
                                     {"Source_List", &F::Source_List},
                                     {"Referent_List", &F::Referent_List}};
constexpr Record kScenario = {
    .table = "Scenario", .rows = &ModelToProject::rsScenario, .columns = kColumns, .key = &F::Num};

constexpr std::size_t kIndent = 3;

// The parent's number stands between "#" and the character in front of "(", its name behind that
// up to ")".
void ReadParent(ModelToProject& state) {
  FieldVariables& fields = state.fields;
  const std::string& line = state.gLine;
  const auto number = static_cast<std::ptrdiff_t>(Find(line, "#", kIndent));
  const auto name = static_cast<std::ptrdiff_t>(Find(line, "(", kIndent));
  if (number == 0 || name <= number) {
    fields.Parent_Num = 0;
    return;
  }
  fields.Parent_Num =
      Integer(state, NumberUse::kReference, Mid(line, number + 1, name - number - 2));
  const auto end = static_cast<std::ptrdiff_t>(Find(line, ")", kIndent));
  fields.Parent = end > name ? Mid(line, name + 1, end - name - 1) : std::string();
}

// A scenario without a parent line has no type line either, and takes the type of the one before.
void ReadParentAndType(ModelToProject& state) {
  FieldVariables& f = state.fields;
  NextLine(state);
  if (!Holds(state.gLine, "Parent:")) {
    f.Parent_Num = 0;
    f.Parent = " ";
    return;
  }
  ReadParent(state);
  f.Scenario_Type = NextField(state, kIndent, 100);
  NextLine(state);
}

void ReadScenarioBlocks(ModelToProject& state) {
  FieldVariables& f = state.fields;
  f.Purpose = ReadBlock(state, "  Purpose");
  f.Viewpoint = ReadBlock(state, "  Viewpoint");
  f.Context = ReadBlock(state, "  Context");
  f.Description = ReadBlock(state, "  Description");
  f.Object_Occ_List = ReadBlock(state, "    Object Occurrence List");
  f.Fact_List = ReadBlock(state, "    Fact List");
  f.Constraint_List = ReadBlock(state, "    Constraint List");
  f.Note_List = ReadBlock(state, "  Note List");
  f.Source_List = ReadBlock(state, "  Source List");
}

// Every variable takes what the scenario gives, empty text too.
void ReadScenarioHead(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, ElementKind::kScenario, listEnd);
  FieldVariables& f = state.fields;
  state.gScenarioNum = Integer(state, NumberUse::kOwn, NumberField(state, 1));
  f.Num = state.gScenarioNum;
  f.Name = NextField(state, kIndent, 250);
  ReadParentAndType(state);
  f.Creator = Field(state, kIndent, 100);
  f.ID = Integer(state, NumberUse::kValue, NextNumberField(state, kIndent));
  f.Revision_Number = Number(state, NextField(state, kIndent, 8));
  f.Review_Status = NextField(state, kIndent, 25);
  f.Date_Created = NextField(state, kIndent, 25);
  f.Last_Modified = NextField(state, kIndent, 25);
  ReadScenarioBlocks(state);
  f.Referent_List = " ";
}

// A project without a scenario row is error 3021.
void SetInScenario(ModelToProject& state, std::string_view column, std::string text) {
  if (!SetInLastRow(state, kScenario, {Cell{column, std::move(text)}})) {
    throw RunTimeError(kNoCurrentRecord);
  }
}

void ReadReferentList(ModelToProject& state) {
  SkipToLineThatHolds(state, "Referent List");
  NextLine(state);
  std::string referents = CollectTo(state, "  End  Referent List");
  if (referents.size() > kTextLimit) Cut(state, kTextLimit);
  if (referents.empty() || referents.size() > kTextLimit) return;
  SetInScenario(state, "Referent_List", std::move(referents));
}

void ReadScenarioEnd(ModelToProject& state) {
  Search(state, "End  Scenario");
  while (state.gLine != "End  Scenario") {
    if (HoldsNoCase(state.gLine, "Decomp-rightmost:")) {
      std::string rightmost = Field(state, 5, 50);
      if (!rightmost.empty()) SetInScenario(state, "Decomp_rightmost", std::move(rightmost));
    }
    NextLine(state);
  }
}

}  // namespace

void ReadScenarios(ModelToProject& state) {
  constexpr std::string_view kEnd = "End  Scenario List";
  SkipTo(state, "Scenario List");
  NextLines(state, 2);
  while (state.gLine != kEnd) {
    ReadScenarioHead(state, kEnd);
    AddRecord(state, kScenario);
    ReadOccurrences(state);
    ReadJunctions(state);
    ReadReferentList(state);
    ReadLinks(state);
    ReadScenarioEnd(state);
    LeaveRecord(state, 2, kEnd);
  }
}

}  // namespace merivane::neutraltext
