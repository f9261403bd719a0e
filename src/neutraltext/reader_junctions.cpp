#include <utility>

#include "reader_lines.h"
#include "reader_records.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

using F = FieldVariables;

constexpr RecordColumn kJunctionColumns[] = {{"Num", &F::Num},
                                             {"Scenario_Num", &ModelToProject::gScenarioNum},
                                             {"ID", &F::ID},
                                             {"Cardinality", &F::Cardinality},
                                             {"Type", &F::Type},
                                             {"Date_Created", &F::Date_Created},
                                             {"Last_Modified", &F::Last_Modified},
                                             {"Column", &F::Column},
                                             {"Row", &F::Row},
                                             {"Glossary", &F::Glossary},
                                             {"Object_Occ_List", &F::Object_Occ_List},
                                             {"Fact_List", &F::Fact_List},
                                             {"Constraint_List", &F::Constraint_List},
                                             {"Note_List", &F::Note_List},
                                             {"Property_List", &F::Property_List}};
constexpr Record kJunctionRecord = {.table = "Junctions_in_Scenario",
                                    .rows = &ModelToProject::rsJunctions,
                                    .columns = kJunctionColumns,
                                    .key = &F::Num};

// What stands behind the junction's head; its row is there already.
constexpr RecordColumn kJunctionLists[] = {{"Fact_List", &F::Fact_List},
                                           {"Constraint_List", &F::Constraint_List},
                                           {"Note_List", &F::Note_List},
                                           {"Property_List", &F::Property_List}};

constexpr RecordColumn kJunctionFactColumns[] = {{"Junction_Num", &ModelToProject::gJunctionNum},
                                                 {"Fact_Num", &F::Fact_Num},
                                                 {"Junction_ID", &ModelToProject::gJunctionId},
                                                 {"Scenario_Num", &ModelToProject::gScenarioNum},
                                                 {"Fact_Name", &F::Fact_Name}};
constexpr Record kJunctionFact = {.table = "Facts_in_Junction",
                                  .rows = &ModelToProject::rsFactsInJunction,
                                  .columns = kJunctionFactColumns,
                                  .inAnyProject = true};

void ReadJunctionHead(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, ElementKind::kJunction, listEnd);
  constexpr std::size_t kIndent = 5;
  FieldVariables& f = state.fields;
  state.gJunctionNum = Integer(state, NumberUse::kOwn, NumberField(state, 3));
  f.Num = state.gJunctionNum;
  KeepNextField(state, f.ID, kIndent, 10);
  state.gJunctionId = Joined(f.ID);
  KeepNextField(state, f.Cardinality, kIndent, 25);
  KeepNextField(state, f.Type, kIndent, 25);
  KeepNextField(state, f.Date_Created, kIndent, 25);
  KeepNextField(state, f.Last_Modified, kIndent, 25);
  NextLine(state);
  ReadPlacement(state);
  KeepBlock(state, f.Glossary, "    Glossary");
  KeepBlock(state, f.Object_Occ_List, "      Object Occurrence List");
  for (FieldVariable* list : {&f.Fact_List, &f.Constraint_List, &f.Note_List, &f.Property_List}) {
    *list = " ";
  }
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

void ReadJunctionFacts(ModelToProject& state) {
  SkipTo(state, "      Fact List");
  NextLine(state);
  std::string facts;
  Search(state, "      End  Fact List");
  while (state.gLine != "      End  Fact List") {
    facts.append(state.gLine).append(kCrLf);
    BeginRecord(state, ElementKind::kJunctionFact);
    ReadJunctionFact(state.fields, state.gLine);
    NextLine(state);
    AddRecord(state, kJunctionFact);
  }
  Keep(state.fields.Fact_List, std::move(facts));
}

void ReadJunctionLists(ModelToProject& state) {
  FieldVariables& f = state.fields;
  ReadJunctionFacts(state);
  KeepBlock(state, f.Constraint_List, "      Constraint List");
  KeepBlock(state, f.Note_List, "    Note List");
  KeepBlock(state, f.Property_List, "  Property List");
  SetInLastRow(state, kJunctionRecord, kJunctionLists);
}

}  // namespace

void ReadJunctions(ModelToProject& state) {
  constexpr std::string_view kEnd = "  End  Junction List";
  EnterList(state, "  Junction List", kEnd);
  while (state.gLine != kEnd) {
    ReadJunctionHead(state, kEnd);
    AddRecord(state, kJunctionRecord);
    ReadJunctionLists(state);
    LeaveRecord(state, 2, kEnd);
  }
}

}  // namespace merivane::neutraltext
