
#include "reader_lines.h"
#include "reader_records.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

using F = FieldVariables;

constexpr RecordColumn kColumns[] = {{"Scenario_Num", &ModelToProject::gScenarioNum},
                                     {"Activity_Num", &ModelToProject::gUseNum},
                                     {"Object_Occ_Num", &F::Object_Occ_Num},
                                     {"Object_Name", &F::Object_Name},
                                     {"Labor_Rule", &F::Labor_Rule},
                                     {"Property_List", &F::Property_List}};
constexpr Record kObjectOccurrence = {.table = "Object_in_Activity_in_Scenario",
                                      .rows = &ModelToProject::rsObjectInActivity,
                                      .columns = kColumns,
                                      .inAnyProject = true};

// The occurrence around it ends with the values of its last object.
constexpr RecordColumn kSimulationValues[] = {{"Duration", &F::Duration},
                                              {"Labor_Rule", &F::Labor_Rule}};

void Append(std::string& text, const std::string& line) { text.append(line).append(kCrLf); }

// A value behind a double blank whose label is exactly that key.
void TakeSimulationValue(const ModelToProject& state, std::string_view key,
                         FieldVariable& variable) {
  const std::string_view line = state.gLine;
  const std::size_t blanks = Find(line, "  ");
  if (blanks == 0 || line.substr(0, blanks - 1) != key) return;
  variable = Field(state, blanks, 25);
}

// From the first property line on. Cycle time and labor rule count in the glossary's second and
// third line alone.
std::string ReadSimulationProperties(ModelToProject& state) {
  std::string text = CollectTo(state, "                Glossary");
  for (int line = 0; line < 2; ++line) {  // the keyword and the glossary's first line
    Append(text, state.gLine);
    NextLine(state);
  }
  TakeSimulationValue(state, "Cycle-Time:", state.fields.Duration);
  if (state.gLine != "                End  Glossary") {
    Append(text, state.gLine);
    NextLine(state);
    TakeSimulationValue(state, "Labor-Rule:", state.fields.Labor_Rule);
  }
  return text + CollectTo(state, "            End  Property List");
}

void ReadObjectOccurrence(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, ElementKind::kObjectUse, listEnd);
  FieldVariables& f = state.fields;
  const std::string head = Field(state, 11, 250);
  TakeApart(state, [&] {
    const auto blanks = static_cast<std::ptrdiff_t>(Find(head, "  "));
    f.Object_Occ_Num = Integer(state, NumberUse::kReference, Left(head, blanks - 1));
    const auto open = static_cast<std::ptrdiff_t>(Find(head, "("));
    const auto close = static_cast<std::ptrdiff_t>(Find(head, ")"));
    Keep(f.Object_Name, Mid(head, open + 1, close - open - 1));
  });

  SkipTo(state, "            Property List");
  NextLine(state);
  if (state.gLine != "            End  Property List") {
    Keep(f.Property_List, ReadSimulationProperties(state));
  }
}

}  // namespace

void ReadObjectOccurrences(ModelToProject& state) {
  constexpr std::string_view kEnd = "        End  Object Occurrence List";
  SkipTo(state, "        Object Occurrence List");
  NextLine(state);
  while (state.gLine != kEnd) {
    ReadObjectOccurrence(state, kEnd);
    NextLines(state, 2);
    AddRecord(state, kObjectOccurrence);
    SetInLastRow(state, kOccurrence, kSimulationValues,
                 " and Use_Num = " + std::to_string(state.gUseNum));
  }
}

}  // namespace merivane::neutraltext
