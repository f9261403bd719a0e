#include <optional>
#include <utility>

#include "reader_lines.h"
#include "reader_sections.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

void KeepNumeric(FieldVariable& variable, std::string text) {
  if (IsNumericText(text)) variable = std::move(text);
}

// The process number and "#" with the occurrence's own. False for a line without the second.
bool ReadNumbers(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, Element::kUnit, listEnd);
  constexpr std::size_t kLength = 25;
  const std::string numbers = Field(state, 5, kLength);
  const auto blanks = static_cast<std::ptrdiff_t>(Find(numbers, "  "));
  state.fields.Process_Num = ToInt16(Left(numbers, blanks - 1));
  const std::string use = FieldAfterBlanks(numbers, 1, kLength);
  if (use.empty()) return false;
  const std::string number = Mid(use, 2);
  Keep(state.fields.Use_Num, number);
  state.gUseNum = ToInt16(number);
  return true;
}

void AddOccurrence(ModelToProject& state) {
  const FieldVariables& f = state.fields;
  const bool wanted = state.gMspProjId != 0 && !IsBlank(f.Use_Num);
  AddRow(state, state.rsActivityInScenario, "Activity_In_Scenario", wanted,
         {{"Use_Num", f.Use_Num},
          {"Msp_ProjID", state.gMspProjId},
          {"Scenario_Num", state.gScenarioNum},
          {"Process_Num", f.Process_Num},
          {"Name", f.Name},
          {"ID", f.ID},
          {"Ref", f.Ref},
          {"Column", f.Column},
          {"Row", f.Row}});
}

void ReadOccurrenceHead(ModelToProject& state) {
  constexpr std::size_t kIndent = 7;
  FieldVariables& f = state.fields;
  KeepNextField(state, f.Name, kIndent, 250);
  KeepInteger(f.ID, NextField(state, kIndent, 4));
  KeepNextField(state, f.Ref, kIndent, 250);
  NextLine(state);
  ReadPlacement(state);
  AddOccurrence(state);
}

// The project's last occurrence row is the one being read.
void ReadOccurrenceLists(ModelToProject& state) {
  FieldVariables& f = state.fields;
  KeepBlock(state, f.Fact_List, "        Fact List", "        End  Fact List");
  KeepBlock(state, f.Constraint_List, "        Constraint List", "        End  Constraint List");
  ChangeLastRow(state, state.rsActivityInScenario, "Activity_In_Scenario", "",
                {{"Fact_List", f.Fact_List}, {"Constraint_List", f.Constraint_List}});
}

}  // namespace

void ReadPlacement(ModelToProject& state) {
  constexpr std::size_t kIndent = 7;
  constexpr std::size_t kLength = 100;
  if (!HoldsNoCase(state.gLine, "user placement column:")) return;
  KeepNumeric(state.fields.Column, Field(state, kIndent, kLength));
  NextLine(state);
  if (!HoldsNoCase(state.gLine, "user placement row:")) return;
  KeepNumeric(state.fields.Row, Field(state, kIndent, kLength));
}

void ReadOccurrences(ModelToProject& state) {
  constexpr std::string_view kEnd = "  End  Process Occurrence List";
  SkipTo(state, "  Process Occurrence List");
  NextLine(state);
  if (state.gLine != kEnd) NextLine(state);
  while (state.gLine != kEnd) {
    if (ReadNumbers(state, kEnd)) {
      ReadOccurrenceHead(state);
      ReadObjectOccurrences(state);
      ReadOccurrenceLists(state);
    }
    SkipTo(state, "    End  Process");
    NextLine(state);
    if (state.gLine != kEnd) NextLine(state);
  }
}

}  // namespace merivane::neutraltext
