#include <utility>

#include "reader_lines.h"
#include "reader_sections.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

void Append(std::string& text, const std::string& line) { text.append(line).append(kCrLf); }

void AddLinesTo(ModelToProject& state, std::string& text, std::string_view closing) {
  Search(state, closing);
  while (state.gLine != closing) {
    Append(text, state.gLine);
    NextLine(state);
  }
}

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
  std::string text;
  AddLinesTo(state, text, "                Glossary");
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
  AddLinesTo(state, text, "            End  Property List");
  return text;
}

void ReadObjectOccurrence(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, Element::kObjectUse, listEnd);
  FieldVariables& f = state.fields;
  const std::string head = Field(state, 11, 250);
  const auto blanks = static_cast<std::ptrdiff_t>(Find(head, "  "));
  f.Object_Occ_Num = ToInt16(Left(head, blanks - 1));
  const auto open = static_cast<std::ptrdiff_t>(Find(head, "("));
  const auto close = static_cast<std::ptrdiff_t>(Find(head, ")"));
  Keep(f.Object_Name, Mid(head, open + 1, close - open - 1));

  SkipTo(state, "            Property List");
  NextLine(state);
  if (state.gLine != "            End  Property List") {
    Keep(f.Property_List, ReadSimulationProperties(state));
  }
}

void AddObjectOccurrence(ModelToProject& state) {
  const FieldVariables& f = state.fields;
  const Value project = state.gMspProjId == 0 ? Value() : Value(state.gMspProjId);
  AddRow(state, state.rsObjectInActivity, "Object_in_Activity_in_Scenario", true,
         {{"Scenario_Num", state.gScenarioNum},
          {"Activity_Num", state.gUseNum},
          {"Object_Occ_Num", f.Object_Occ_Num},
          {"Msp_ProjID", project},
          {"Object_Name", f.Object_Name},
          {"Labor_Rule", f.Labor_Rule},
          {"Property_List", f.Property_List}});
}

// The occurrence ends with the values of its last object.
void SetSimulationValues(ModelToProject& state) {
  ChangeLastRow(state, state.rsActivityInScenario, "Activity_In_Scenario",
                " and Use_Num = " + std::to_string(state.gUseNum),
                {{"Duration", state.fields.Duration}, {"Labor_Rule", state.fields.Labor_Rule}});
}

}  // namespace

void ReadObjectOccurrences(ModelToProject& state) {
  constexpr std::string_view kEnd = "        End  Object Occurrence List";
  SkipTo(state, "        Object Occurrence List");
  NextLine(state);
  while (state.gLine != kEnd) {
    ReadObjectOccurrence(state, kEnd);
    NextLines(state, 2);
    AddObjectOccurrence(state);
    SetSimulationValues(state);
  }
}

}  // namespace merivane::neutraltext
