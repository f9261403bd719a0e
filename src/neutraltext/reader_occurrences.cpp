#include <utility>

#include "reader_lines.h"
#include "reader_records.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

using F = FieldVariables;

constexpr RecordColumn kColumns[] = {{"Use_Num", &F::Use_Num},
                                     {"Scenario_Num", &ModelToProject::gScenarioNum},
                                     {"Process_Num", &F::Process_Num},
                                     {"Name", &F::Name},
                                     {"ID", &F::ID},
                                     {"Ref", &F::Ref},
                                     {"Column", &F::Column},
                                     {"Row", &F::Row}};

constexpr RecordColumn kLists[] = {{"Fact_List", &F::Fact_List},
                                   {"Constraint_List", &F::Constraint_List}};

void KeepNumeric(FieldVariable& variable, std::string text) {
  if (IsNumericText(text)) variable = std::move(text);
}

// The process number and "#" with the occurrence's own. False for a line without the second.
bool ReadNumbers(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, ElementKind::kUnit, listEnd);
  constexpr std::size_t kLength = 25;
  const std::string numbers = Field(state, 5, kLength);
  const auto blanks = static_cast<std::ptrdiff_t>(Find(numbers, "  "));
  state.fields.Process_Num = Integer(state, NumberUse::kReference, Left(numbers, blanks - 1));
  const std::string use = FieldAfterBlanks(numbers, 1, kLength);
  if (use.empty()) return false;
  const std::string number = Mid(use, 2);
  Keep(state.fields.Use_Num, number);
  state.gUseNum = Integer(state, NumberUse::kOwn, number);
  return true;
}

void ReadOccurrenceHead(ModelToProject& state) {
  constexpr std::size_t kIndent = 7;
  FieldVariables& f = state.fields;
  KeepNextField(state, f.Name, kIndent, 250);
  KeepInteger(state, f.ID, NextNumberField(state, kIndent));
  KeepNextField(state, f.Ref, kIndent, 250);
  NextLine(state);
  ReadPlacement(state);
  AddRecord(state, kOccurrence);
}

void ReadOccurrenceLists(ModelToProject& state) {
  KeepBlock(state, state.fields.Fact_List, "        Fact List");
  KeepBlock(state, state.fields.Constraint_List, "        Constraint List");
  SetInLastRow(state, kOccurrence, kLists);
}

}  // namespace

constinit const Record kOccurrence = {.table = "Activity_In_Scenario",
                                      .rows = &ModelToProject::rsActivityInScenario,
                                      .columns = kColumns,
                                      .key = &F::Use_Num};

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
  EnterList(state, "  Process Occurrence List", kEnd);
  while (state.gLine != kEnd) {
    if (ReadNumbers(state, kEnd)) {
      ReadOccurrenceHead(state);
      ReadObjectOccurrences(state);
      ReadOccurrenceLists(state);
    }
    SkipTo(state, "    End  Process");
    LeaveRecord(state, 1, kEnd);
  }
}

}  // namespace merivane::neutraltext
