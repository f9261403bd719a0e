#include <utility>

#include "reader_lines.h"
#include "reader_sections.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

void ReadJunctionHead(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, Element::kJunction, listEnd);
  constexpr std::size_t kIndent = 5;
  FieldVariables& f = state.fields;
  state.gJunctionNum = ToInt16(Field(state, 3, 4));
  f.Num = state.gJunctionNum;
  KeepNextField(state, f.ID, kIndent, 10);
  state.gJunctionId = Joined(f.ID);
  KeepNextField(state, f.Cardinality, kIndent, 25);
  KeepNextField(state, f.Type, kIndent, 25);
  KeepNextField(state, f.Date_Created, kIndent, 25);
  KeepNextField(state, f.Last_Modified, kIndent, 25);
  NextLine(state);
  ReadPlacement(state);
  KeepBlock(state, f.Glossary, "    Glossary", "    End  Glossary");
  KeepBlock(state, f.Object_Occ_List, "      Object Occurrence List",
            "      End  Object Occurrence List");
  for (FieldVariable* list : {&f.Fact_List, &f.Constraint_List, &f.Note_List, &f.Property_List}) {
    *list = " ";
  }
}

void AddJunction(ModelToProject& state) {
  const FieldVariables& f = state.fields;
  AddRow(state, state.rsJunctions, "Junctions_in_Scenario", IsRecordWanted(state),
         {{"Num", f.Num},
          {"Msp_ProjID", state.gMspProjId},
          {"Scenario_Num", state.gScenarioNum},
          {"ID", f.ID},
          {"Cardinality", f.Cardinality},
          {"Type", f.Type},
          {"Date_Created", f.Date_Created},
          {"Last_Modified", f.Last_Modified},
          {"Column", f.Column},
          {"Row", f.Row},
          {"Glossary", f.Glossary},
          {"Object_Occ_List", f.Object_Occ_List},
          {"Fact_List", f.Fact_List},
          {"Constraint_List", f.Constraint_List},
          {"Note_List", f.Note_List},
          {"Property_List", f.Property_List}});
}

// The number stands from column 9 up to a double blank, the name between brackets behind it. A
// line without brackets leaves the name of the fact before.
void ReadJunctionFact(FieldVariables& fields, const std::string& line) {
  constexpr std::size_t kSearch = 8;
  constexpr std::size_t kColumn = 9;
  const std::size_t blanks = Find(line, "  ", kSearch);
  const std::string number =
      blanks > kColumn ? line.substr(kColumn - 1, blanks - kColumn) : std::string("0");
  fields.Fact_Num = IsNumericText(number) ? ToInt16(number) : std::int16_t{0};
  const std::size_t open = Find(line, "(", kSearch);
  const std::size_t close = Find(line, ")", kSearch);
  if (open > 0 && close > open) fields.Fact_Name = line.substr(open, close - open - 1);
}

void AddJunctionFact(ModelToProject& state) {
  const Value project = state.gMspProjId == 0 ? Value() : Value(state.gMspProjId);
  AddRow(state, state.rsFactsInJunction, "Facts_in_Junction", true,
         {{"Junction_Num", state.gJunctionNum},
          {"Fact_Num", state.fields.Fact_Num},
          {"Junction_ID", state.gJunctionId},
          {"Scenario_Num", state.gScenarioNum},
          {"Fact_Name", state.fields.Fact_Name},
          {"Msp_ProjID", project}});
}

void ReadJunctionFacts(ModelToProject& state) {
  SkipTo(state, "      Fact List");
  NextLine(state);
  std::string facts;
  Search(state, "      End  Fact List");
  while (state.gLine != "      End  Fact List") {
    facts.append(state.gLine).append(kCrLf);
    BeginRecord(state, Element::kJunctionFact);
    ReadJunctionFact(state.fields, state.gLine);
    NextLine(state);
    AddJunctionFact(state);
  }
  Keep(state.fields.Fact_List, std::move(facts));
}

// The project's last junction row is the one being read.
void SetJunctionLists(ModelToProject& state) {
  const FieldVariables& f = state.fields;
  ChangeLastRow(state, state.rsJunctions, "Junctions_In_Scenario", "",
                {{"Fact_List", f.Fact_List},
                 {"Constraint_List", f.Constraint_List},
                 {"Note_List", f.Note_List},
                 {"Property_List", f.Property_List}});
}

void ReadJunctionLists(ModelToProject& state) {
  FieldVariables& f = state.fields;
  ReadJunctionFacts(state);
  KeepBlock(state, f.Constraint_List, "      Constraint List", "      End  Constraint List");
  KeepBlock(state, f.Note_List, "    Note List", "    End  Note List");
  KeepBlock(state, f.Property_List, "  Property List", "  End  Property List");
  SetJunctionLists(state);
}

}  // namespace

void ReadJunctions(ModelToProject& state) {
  constexpr std::string_view kEnd = "  End  Junction List";
  SkipTo(state, "  Junction List");
  NextLine(state);
  if (state.gLine != kEnd) NextLine(state);
  while (state.gLine != kEnd) {
    ReadJunctionHead(state, kEnd);
    AddJunction(state);
    ReadJunctionLists(state);
    NextLines(state, 2);
    if (state.gLine != kEnd) NextLine(state);
  }
}

}  // namespace merivane::neutraltext
