#include <utility>

#include "reader_pool_record.h"
#include "reader_sections.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

// Quantity and alias stand behind a double blank among the object's properties.
void ReadQuantityOrAlias(ModelToProject& state) {
  constexpr std::size_t kLength = 10;
  const std::string_view line = state.gLine;
  const std::size_t blanks = Find(line, "  ");
  if (blanks == 0) return;
  if (line.substr(0, blanks - 1) == "Quantity:") {
    state.fields.Quantity = ToDouble(Field(state, blanks, kLength));
  } else if (Holds(line, "Alias:")) {
    state.fields.Alias = Field(state, blanks, kLength);
  }
}

void ReadObjectProperties(ModelToProject& state) {
  SkipTo(state, "  Property List");
  NextLine(state);
  std::string properties;
  Search(state, "  End  Property List");
  while (state.gLine != "  End  Property List") {
    ReadQuantityOrAlias(state);
    properties.append(state.gLine).append(kCrLf);
    NextLine(state);
  }
  Keep(state.fields.Property_List, std::move(properties));
}

void ReadObject(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, Element::kObject, listEnd);
  ReadPoolHead(state, ValidateObjectName);
  ReadObjectProperties(state);
  KeepNextField(state, state.fields.Dunmar_Type, 3, 25);
  KeepNextField(state, state.fields.Celvar_Type, 3, 25);
  ReadPoolElaboration(state);
}

void AddObject(ModelToProject& state) {
  const FieldVariables& f = state.fields;
  AddRow(state, state.rsObjectPool, "Object_Pool", IsRecordWanted(state),
         {{"Num", f.Num},
          {"Msp_ProjID", state.gMspProjId},
          {"Name", f.Name},
          {"Creator", f.Creator},
          {"Date_Created", f.Date_Created},
          {"Last_Modified", f.Last_Modified},
          {"Glossary", f.Glossary},
          {"Note_List", f.Note_List},
          {"Source_List", f.Source_List},
          {"Quantity", f.Quantity},
          {"Alias", f.Alias},
          {"Property_List", f.Property_List},
          {"Dunmar_Type", f.Dunmar_Type},
          {"Celvar_Type", f.Celvar_Type},
          {"Object_Occ_List", f.Object_Occ_List},
          {"Fact_List", f.Fact_List},
          {"Constraint_List", f.Constraint_List}});
}

}  // namespace

void ReadObjectPool(ModelToProject& state) {
  constexpr std::string_view kEnd = "End  Object Pool";
  // Proves that the plan's resources can be appended to, before any object is read.
  Recordset resources = Ask(state.gMspConn.get(), "Select * from MSP_RESOURCES");
  resources.MoveLast();
  SkipTo(state, "Object Pool");
  NextLine(state);
  while (state.gLine != kEnd) {
    ReadObject(state, kEnd);
    NextLines(state, 3);
    if (state.gLine != kEnd) NextLine(state);
    AddObject(state);
  }
  resources.Close();
}

}  // namespace merivane::neutraltext
