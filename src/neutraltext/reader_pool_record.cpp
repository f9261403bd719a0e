#include "reader_pool_record.h"

#include <utility>

#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

void ReadPoolHead(ModelToProject& state, void (*validateName)(Desktop&, const std::string&)) {
  FieldVariables& f = state.fields;
  f.Num = ToInt16(Field(state, 1, 4));
  std::string name = NextField(state, 3, 250);
  validateName(state.desktop, name);
  Keep(f.Name, std::move(name));
  KeepNextField(state, f.Creator, 3, 100);
  KeepNextField(state, f.Date_Created, 3, 25);
  KeepNextField(state, f.Last_Modified, 3, 25);
  std::string glossary = ReadBlock(state, "  Glossary", "  End  Glossary");
  if (glossary != kCrLf) Keep(f.Glossary, std::move(glossary));
  KeepBlock(state, f.Note_List, "  Note List", "  End  Note List");
  KeepBlock(state, f.Source_List, "  Source List", "  End  Source List");
}

void ReadPoolElaboration(ModelToProject& state) {
  FieldVariables& f = state.fields;
  KeepBlock(state, f.Object_Occ_List, "    Object Occurrence List",
            "    End  Object Occurrence List");
  KeepBlock(state, f.Fact_List, "    Fact List", "    End  Fact List");
  KeepBlock(state, f.Constraint_List, "    Constraint List", "    End  Constraint List");
}

}  // namespace merivane::neutraltext
