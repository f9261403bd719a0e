#include "reader_lines.h"
#include "reader_sections.h"
#include "runtime/conversions.h"

namespace merivane::neutraltext {

namespace {

// Every variable takes what the record gives, empty text too.
void ReadFact(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, Element::kFact, listEnd);
  FieldVariables& f = state.fields;
  f.Num = ToInt16(Field(state, 1, 4));
  f.Name = NextField(state, 3, 250);
  f.Creator = NextField(state, 3, 100);
  f.Date_Created = NextField(state, 3, 25);
  f.Last_Modified = NextField(state, 3, 25);
  f.Glossary = ReadBlock(state, "  Glossary", "  End  Glossary");
  f.Note_List = ReadBlock(state, "  Note List", "  End  Note List");
  f.Source_List = ReadBlock(state, "  Source List", "  End  Source List");
  f.Property_List = ReadBlock(state, "  Property List", "  End  Property List");
}

void AddFact(ModelToProject& state) {
  const FieldVariables& f = state.fields;
  AddRow(state, state.rsFactPool, "Fact_Pool", IsRecordWanted(state),
         {{"Num", f.Num},
          {"Msp_ProjID", state.gMspProjId},
          {"Name", f.Name},
          {"Creator", f.Creator},
          {"Date_Created", f.Date_Created},
          {"Last_Modified", f.Last_Modified},
          {"Glossary", f.Glossary},
          {"Note_List", f.Note_List},
          {"Source_List", f.Source_List},
          {"Property_List", f.Property_List}});
}

}  // namespace

void ReadFactPool(ModelToProject& state) {
  constexpr std::string_view kEnd = "End  Fact Pool";
  SkipTo(state, "Fact Pool");
  NextLine(state);
  while (state.gLine != kEnd) {
    ReadFact(state, kEnd);
    NextLines(state, 2);
    if (state.gLine != kEnd) NextLine(state);
    AddFact(state);
  }
}

}  // namespace merivane::neutraltext
