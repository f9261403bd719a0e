#include "reader_pool_record.h"
#include "reader_sections.h"
#include "runtime/conversions.h"

namespace merivane::neutraltext {

namespace {

void AddProcess(ModelToProject& state) {
  const FieldVariables& f = state.fields;
  AddRow(state, state.rsActivityPool, "Activity_Pool", IsRecordWanted(state),
         {{"Num", f.Num},
          {"Msp_ProjID", state.gMspProjId},
          {"Name", f.Name},
          {"Creator", f.Creator},
          {"Date_Created", f.Date_Created},
          {"Last_Modified", f.Last_Modified},
          {"Glossary", f.Glossary},
          {"Note_List", f.Note_List},
          {"Source_List", f.Source_List},
          {"Property_List", f.Property_List},
          {"ID", f.ID},
          {"Ref", f.Ref},
          {"Object_Occ_List", f.Object_Occ_List},
          {"Fact_List", f.Fact_List},
          {"Constraint_list", f.Constraint_List}});
}

void ReadProcess(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, Element::kProcess, listEnd);
  FieldVariables& f = state.fields;
  ReadPoolHead(state, ValidateUobName);
  KeepBlock(state, f.Property_List, "  Property List", "  End  Property List");
  KeepInteger(f.ID, NextField(state, 3, 4));
  KeepNextField(state, f.Ref, 3, 250);
  ReadPoolElaboration(state);
}

}  // namespace

void ReadProcessPool(ModelToProject& state) {
  constexpr std::string_view kEnd = "End  Process Pool";
  SkipTo(state, "Process Pool");
  NextLine(state);
  while (state.gLine != kEnd) {
    ReadProcess(state, kEnd);
    AddProcess(state);
    NextLines(state, 3);
    if (state.gLine != kEnd) NextLine(state);
  }
}

}  // namespace merivane::neutraltext
