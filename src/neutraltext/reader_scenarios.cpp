#include <utility>

#include "reader_lines.h"
#include "reader_sections.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

constexpr std::size_t kIndent = 3;

// The parent's number stands between "#" and the character in front of "(", its name behind that
// up to ")".
void ReadParent(FieldVariables& fields, const std::string& line) {
  const auto number = static_cast<std::ptrdiff_t>(Find(line, "#", kIndent));
  const auto name = static_cast<std::ptrdiff_t>(Find(line, "(", kIndent));
  if (number == 0 || name <= number) {
    fields.Parent_Num = 0;
    return;
  }
  fields.Parent_Num = ToInt16(Mid(line, number + 1, name - number - 2));
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
  ReadParent(f, state.gLine);
  f.Scenario_Type = NextField(state, kIndent, 100);
  NextLine(state);
}

void ReadScenarioBlocks(ModelToProject& state) {
  FieldVariables& f = state.fields;
  f.Purpose = ReadBlock(state, "  Purpose", "  End  Purpose");
  f.Viewpoint = ReadBlock(state, "  Viewpoint", "  End  Viewpoint");
  f.Context = ReadBlock(state, "  Context", "  End  Context");
  f.Description = ReadBlock(state, "  Description", "  End  Description");
  f.Object_Occ_List =
      ReadBlock(state, "    Object Occurrence List", "    End  Object Occurrence List");
  f.Fact_List = ReadBlock(state, "    Fact List", "    End  Fact List");
  f.Constraint_List = ReadBlock(state, "    Constraint List", "    End  Constraint List");
  f.Note_List = ReadBlock(state, "  Note List", "  End  Note List");
  f.Source_List = ReadBlock(state, "  Source List", "  End  Source List");
}

// Every variable takes what the scenario gives, empty text too.
void ReadScenarioHead(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, Element::kScenario, listEnd);
  FieldVariables& f = state.fields;
  state.gScenarioNum = ToInt16(Field(state, 1, 4));
  f.Num = state.gScenarioNum;
  f.Name = NextField(state, kIndent, 250);
  ReadParentAndType(state);
  f.Creator = Field(state, kIndent, 100);
  f.ID = ToInt16(NextField(state, kIndent, 4));
  f.Revision_Number = ToDouble(NextField(state, kIndent, 8));
  f.Review_Status = NextField(state, kIndent, 25);
  f.Date_Created = NextField(state, kIndent, 25);
  f.Last_Modified = NextField(state, kIndent, 25);
  ReadScenarioBlocks(state);
  f.Referent_List = " ";
}

void AddScenario(ModelToProject& state) {
  const FieldVariables& f = state.fields;
  AddRow(state, state.rsScenario, "Scenario", IsRecordWanted(state),
         {{"Num", f.Num},
          {"Msp_ProjID", state.gMspProjId},
          {"Name", f.Name},
          {"Parent_Num", f.Parent_Num},
          {"Parent", f.Parent},
          {"Type", f.Scenario_Type},
          {"Creator", f.Creator},
          {"ID", f.ID},
          {"Revision_Number", f.Revision_Number},
          {"Review_Status", f.Review_Status},
          {"Date_Created", f.Date_Created},
          {"Last_Modified", f.Last_Modified},
          {"Purpose", f.Purpose},
          {"Viewpoint", f.Viewpoint},
          {"Context", f.Context},
          {"Description", f.Description},
          {"Object_Occ_List", f.Object_Occ_List},
          {"Fact_List", f.Fact_List},
          {"Constraint_List", f.Constraint_List},
          {"Note_List", f.Note_List},
          {"Source_List", f.Source_List},
          {"Referent_List", f.Referent_List}});
}

// The project's last scenario row is the one being read.
void SetInLastScenario(ModelToProject& state, std::string_view column, const Value& text) {
  if (!IsStored(state, RowChange::kChanged, "Scenario", {{column, text}})) return;
  Recordset& rows = state.rsScenario;
  rows.Source(RowsOfProject(state, "Scenario"));
  rows.ActiveConnection(state.gMspConn.get());
  rows.Open();
  rows.MoveLast();
  rows.SetField(column, text);
  rows.Update();
  rows.Close();
}

void ReadReferentList(ModelToProject& state) {
  SkipToLineThatHolds(state, "Referent List");
  NextLine(state);
  const std::string referents = CollectTo(state, "  End  Referent List");
  if (referents.size() > kTextLimit) Cut(state, kTextLimit);
  if (referents.empty() || referents.size() > kTextLimit) return;
  SetInLastScenario(state, "Referent_List", referents);
}

void ReadScenarioEnd(ModelToProject& state) {
  Search(state, "End  Scenario");
  while (state.gLine != "End  Scenario") {
    if (HoldsNoCase(state.gLine, "Decomp-rightmost:")) {
      const std::string rightmost = Field(state, 5, 50);
      if (!rightmost.empty()) SetInLastScenario(state, "Decomp_rightmost", rightmost);
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
    AddScenario(state);
    ReadOccurrences(state);
    ReadJunctions(state);
    ReadReferentList(state);
    ReadLinks(state);
    ReadScenarioEnd(state);
    NextLines(state, 2);
    if (state.gLine != kEnd) NextLine(state);
  }
}

}  // namespace merivane::neutraltext
